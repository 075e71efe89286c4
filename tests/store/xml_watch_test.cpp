#include "store/xml_watch.hpp"

#include <gtest/gtest.h>
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <string>

#include "support/support.hpp"

namespace qvtc::store {

namespace {

void parse(const std::string& text) {
    xmlFreeDoc(xmlReadMemory(text.data(), static_cast<int>(text.size()), "x.xml", nullptr, 0));
}

/// As libxml2 does when an allocation has failed.
void run_out_of_memory() {
    xmlError error{};
    error.code = XML_ERR_NO_MEMORY;
    xmlStructuredError(xmlStructuredErrorContext, &error);
}

} // namespace

TEST(XmlWatch, TellsFaultsFromWantOfMemoryAndPrintsNeither) {
    const std::string printed = test::capture_stderr([] {
        const XmlWatch watch;
        parse("<a/>");
        EXPECT_FALSE(watch.found_faults());
        parse("<a>");
        EXPECT_TRUE(watch.found_faults());
        EXPECT_FALSE(watch.ran_out_of_memory());
        run_out_of_memory();
        EXPECT_TRUE(watch.ran_out_of_memory());
    });
    EXPECT_EQ(printed, "");
}

TEST(XmlWatch, GivesTheHostsOwnHandlerBack) {
    int told = 0;
    xmlSetStructuredErrorFunc(&told, [](void* count, xmlErrorPtr) { ++*static_cast<int*>(count); });
    {
        const XmlWatch outer;
        { const XmlWatch inner; }
        parse("<a>");
        EXPECT_TRUE(outer.found_faults());
    }
    EXPECT_EQ(told, 0);
    parse("<a>");
    EXPECT_GT(told, 0);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

} // namespace qvtc::store
