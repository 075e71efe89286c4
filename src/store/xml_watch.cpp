#include "store/xml_watch.hpp"

#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/threads.h>
#include <new>

namespace qvtc::store {

namespace {

/// Without what it keeps of each thread but the main one, libxml2 would end the process.
void prepare_thread() {
    xmlInitParser();
    if (xmlIsMainThread() == 0 && xmlGetGlobalState() == nullptr) throw std::bad_alloc();
}

} // namespace

XmlWatch::XmlWatch() {
    prepare_thread();
    former_handler_ = xmlStructuredError;
    former_context_ = xmlStructuredErrorContext;
    xmlSetStructuredErrorFunc(this, note);
}

XmlWatch::~XmlWatch() { xmlSetStructuredErrorFunc(former_context_, former_handler_); }

void XmlWatch::note(void* watch, xmlErrorPtr error) {
    auto& self = *static_cast<XmlWatch*>(watch);
    (error->code == XML_ERR_NO_MEMORY ? self.ran_out_of_memory_ : self.found_faults_) = true;
}

} // namespace qvtc::store
