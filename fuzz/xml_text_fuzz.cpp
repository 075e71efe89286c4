// What is kept of a value, and what a parser that forgives nothing makes of it.

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <memory>
#include <string>

#include "fuzzing.hpp"
#include "store/document.hpp"

using namespace qvtc;
using fuzz::require;

namespace {

const xmlChar* xml(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

struct Release {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using Document = std::unique_ptr<xmlDoc, Release>;
using Text = std::unique_ptr<xmlChar, Release>;

/// The text as it comes back from a document of one element.
std::string through_a_document(const std::string& name, const std::string& text) {
    const Document document(xmlNewDoc(xml("1.0")));
    xmlDocSetRootElement(document.get(), xmlNewNode(nullptr, xml(name)));
    xmlAddChild(xmlDocGetRootElement(document.get()), xmlNewText(xml(text)));
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document.get(), &bytes, &size, "UTF-8", 1);
    const Text dumped(bytes);
    const Document parsed(
        xmlReadMemory(reinterpret_cast<const char*>(bytes), size, "", nullptr, XML_PARSE_NONET));
    require(parsed != nullptr, "well-formed");
    const Text content(xmlNodeGetContent(xmlDocGetRootElement(parsed.get())));
    return reinterpret_cast<const char*>(content.get());
}

bool is_part_of(std::string_view part, std::string_view whole) {
    for (const char c : part) {
        const std::size_t at = whole.find(c);
        if (at == std::string_view::npos) return false;
        whole.remove_prefix(at + 1);
    }
    return true;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string value(fuzz::c_text_of(data, size));
    const std::string kept = store::xml_text(value);
    require(is_part_of(kept, value), "characters are only dropped");
    require(store::xml_text(kept) == kept, "what is kept is kept");
    if (xmlCheckUTF8(xml(value)) != 0 &&
        value.find_first_of("\x01\x02\x03\x04\x05\x06\x07\x08"
                            "\x0b\x0c\x0e\x0f\x10\x11\x12\x13"
                            "\x14\x15\x16\x17\x18\x19\x1a\x1b"
                            "\x1c\x1d\x1e\x1f\xed\xef\xf4") == std::string::npos)
        require(kept == value, "nothing is dropped needlessly");
    require(through_a_document("k", kept) == kept, "text");

    const std::string stored = store::stored_form(value);
    require(stored.size() == value.size() && stored.find_first_of("&\\") == std::string::npos,
            "stored form");
    if (value.find_first_of("%|") == std::string::npos)
        require(store::value_form(stored) == value, "stored form and back");
    if (store::is_element_name(value)) require(through_a_document(value, "x") == "x", "name");
    return 0;
}
