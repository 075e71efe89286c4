#pragma once

#include <libxml/xmlerror.h>

namespace qvtc::store {

/// Notes, while it lives, what libxml2 complains of in this thread, and keeps it
/// from standard error. libxml2 goes on with what it has when memory runs out: a
/// tree or a text of its own may then lack a part, and nothing else shows it.
class XmlWatch {
  public:
    /// Throws std::bad_alloc when libxml2 has no room for what it keeps of a thread.
    XmlWatch();
    XmlWatch(const XmlWatch&) = delete;
    XmlWatch& operator=(const XmlWatch&) = delete;
    ~XmlWatch();

    bool ran_out_of_memory() const { return ran_out_of_memory_; }
    bool found_faults() const { return found_faults_; }

  private:
    static void note(void* watch, xmlErrorPtr error);

    xmlStructuredErrorFunc former_handler_;
    void* former_context_;
    bool ran_out_of_memory_ = false;
    bool found_faults_ = false;
};

} // namespace qvtc::store
