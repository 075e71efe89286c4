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

/// Length of the character at the beginning of a text in strict UTF-8; 0 when there is none, or
/// none of XML's.
std::size_t character(std::string_view text) {
    const auto byte = [text](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80U   ? 1
                               : lead < 0xc2U ? 0
                               : lead < 0xe0U ? 2
                               : lead < 0xf0U ? 3
                               : lead < 0xf5U ? 4
                                              : 0;
    unsigned point = length == 1 ? lead : lead & (0x7fU >> length);
    for (std::size_t at = 1; at < length; ++at) {
        if (byte(at) < 0x80U || byte(at) > 0xbfU) return 0;
        point = point << 6U | (byte(at) & 0x3fU);
    }
    const bool too_long = (length == 3 && point < 0x800U) || (length == 4 && point < 0x10000U);
    const bool of_xml =
        point == '\t' || point == '\n' || point == '\r' || (point >= 0x20U && point <= 0xd7ffU) ||
        (point >= 0xe000U && point <= 0xfffdU) || (point >= 0x10000U && point <= 0x10ffffU);
    return too_long || !of_xml ? 0 : length;
}

bool is_xml(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = character(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
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
    require(is_xml(kept), "only XML's characters are kept");
    if (is_xml(value)) require(kept == value, "and all of them");
    require(through_a_document("k", kept) == kept, "text");

    const std::string stored = store::stored_form(value);
    require(stored.size() == value.size() && stored.find_first_of("&\\") == std::string::npos,
            "stored form");
    if (value.find_first_of("%|") == std::string::npos)
        require(store::value_form(stored) == value, "stored form and back");
    if (store::is_element_name(value)) {
        require(is_xml(value), "name of XML's characters");
        require(through_a_document(value, "x") == "x", "name");
    }
    return 0;
}
