// A settings document of any bytes: it is left alone, or it takes a value and stays whole.
// Rewrites the settings document, so it runs in a disposable terminal only.

#include <cstdio>
#include <libxml/xmlerror.h>
#include <string>
#include <vector>

#include "core/files.hpp"
#include "core/paths.hpp"
#include "fuzzing.hpp"
#include "store/document.hpp"

using namespace qvtc;
using fuzz::require;
using store::Document;

namespace {

void keep_quiet(void*, const char*, ...) {}

void write_document(std::string_view text) {
    std::FILE* const file = std::fopen(paths::settings_document, "we");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

std::string document_bytes() {
    std::string bytes;
    require(read_file(paths::settings_document, bytes) == FileState::read, "readable");
    return bytes;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool quiet = [] {
        xmlSetGenericErrorFunc(nullptr, keep_quiet);
        return true;
    }();
    static_cast<void>(quiet);
    const std::string text(fuzz::text_of(data, size));
    write_document(text);
    const std::vector<const char*> keys = {"k", "b", "a"};
    bool stored = false;
    Document::State before{};
    store::change_document([&](Document& document) {
        before = document.state();
        for (std::size_t i = 0; i < keys.size(); ++i) {
            require(document.get_all("configItem", keys)[i] ==
                        document.get("configItem", keys[i]).value_or(""),
                    "all values at once");
        }
        return stored = document.set("configItem", "k", "value");
    });
    if (!stored) {
        require(before == Document::State::foreign || before == Document::State::rootless,
                "only what is not ours is left alone");
        require(document_bytes() == text, "and to the byte");
        return 0;
    }
    const Document after = Document::load();
    require(after.state() == Document::State::loaded, "a document of ours");
    require(after.get("configItem", "k") == "value", "the value");
    return 0;
}
