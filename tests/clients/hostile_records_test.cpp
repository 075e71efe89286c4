// Records full of hostile values, from the settings document to the client's arguments.

#include "clients/exports.hpp"
#include "clients/hostile_values.hpp"

#include "connections/fields.hpp"
#include "core/base64.hpp"
#include "core/text.hpp"
#include "store/document.hpp"
#include "support/passed_on_os.hpp"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

using test::StandIn;

/// The system as it is, but for threads: they are said to have been started.
class UnwatchedOs final : public test::PassedOnOs {
    bool start_thread(std::function<void()>) override { return true; }
};

/// A password as the front-end stores it: "+" for the padding, and "-" where "+" would stand.
std::string stored_password(const std::string& password) {
    std::string text = base64::encode(password);
    return replace_all(replace_all(std::move(text), '+', '-'), '=', '+');
}

/// A hostile value as it is when it has been in a record.
struct Hostile {
    std::string value;
    std::string password; ///< as many of its first bytes as a stored password, or name, has
};

class HostileRecords : public HostileTerminal {
  protected:
    /// Stores every hostile value in all fields of a record that hold text, launches the record
    /// and holds the client's arguments against what they should be.
    void expect_launches(StandIn& launched, const std::string& item, unsigned id,
                         const std::function<StandIn::Arguments(const Hostile&)>& arguments) {
        const UnwatchedOs unwatched;
        for (const std::string& text : hostile_values()) {
            const std::string password = text.substr(0, 31);
            store(item, text, password);
            // Not every byte survives the document.
            const std::string value = store::Document::load().get(item, "name").value_or("");
            if (value.empty()) continue;
            launched.forget_calls();
            EXPECT_EQ(qvlaunchclient(id), 0);
            ASSERT_TRUE(test::wait_until([&] { return !launched.calls().empty(); }));
            EXPECT_EQ(launched.calls(), StandIn::Calls{arguments({cut(value, 63), password})})
                << testing::PrintToString(text);
            ASSERT_FALSE(test::file_exists("/tmp/owned")) << testing::PrintToString(text);
        }
    }

  private:
    static void store(const std::string& item, const std::string& text,
                      const std::string& password) {
        test::store_items({});
        store::change_document([&](store::Document& document) {
            for (const char* const field : connections::field_names) {
                document.set(item, field, text);
            }
            for (const char* const field : {"useRdGateway", "useCustomRDPPort", "isConnectStart"}) {
                document.set(item, field, "on");
            }
            for (const char* const field : {"password", "rdGatewayPassword"}) {
                document.set(item, field, stored_password(password));
            }
            document.set(item, "desktop", hex_of(password));
            return true;
        });
    }

    StandIn killall{"killall"};
};

} // namespace

TEST_F(HostileRecords, GoFromTheDocumentToAnRdpClient) {
    const StandIn qvplugin("qvplugin");
    const StandIn xrandr("xrandr");
    expect_launches(xfreerdp, "rdpItem_id_35", 35, [](const Hostile& hostile) {
        const auto& [value, password] = hostile;
        StandIn::Arguments arguments = words("/t:" + value);
        append(arguments, {"/v:" + value, "/f", "+auto-reconnect", "/auto-reconnect-max-retries:5",
                           "/cert-ignore", "/u:" + value, "/p:" + password, "/d:" + value,
                           "/g:" + value, "/gu:", "/gp:" + password, "/gd:" + value});
        append(arguments, words("/bpp:" + value));
        append(arguments, {"-compression"});
        append(arguments, words("/port:" + value));
        append(arguments, {"-wallpaper", "-bitmap-cache", "-window-drag", "-menu-anims",
                           "/shell:" + value, "/shell-dir:" + value, "/monitors:1", "/multimon"});
        return arguments;
    });
}

TEST_F(HostileRecords, GoFromTheDocumentToASpiceClient) {
    expect_launches(remote_viewer, "spiceItem_id_70", 70, [](const Hostile& hostile) {
        StandIn::Arguments arguments{"-f", "--spice-disable-usbredir"};
        append(arguments, words("spice://" + hostile.value + ":" + hostile.value));
        return arguments;
    });
}

TEST_F(HostileRecords, GoFromTheDocumentToAHorizonClient) {
    expect_launches(vmware_view, "vmwareItem_id_160", 160, [](const Hostile& hostile) {
        StandIn::Arguments arguments{"-q", "--once", "--enableMMR", "--monitors=2"};
        const std::pair<const char*, std::string> options[] = {{"-s", hostile.value},
                                                               {"-u", hostile.value},
                                                               {"-p", hostile.password},
                                                               {"-d", hostile.value},
                                                               {"-n", hostile.password}};
        for (const auto& [option, value] : options) {
            arguments.emplace_back(option);
            append(arguments, words(value));
        }
        append(arguments, {"--nomenubar", "--protocol=PCOIP"});
        return arguments;
    });
}

TEST_F(HostileRecords, GoFromTheDocumentToAVncClient) {
    expect_launches(vncviewer, "vncItem_id_230", 230, [](const Hostile& hostile) {
        StandIn::Arguments arguments{"FullScreen", "passwd"};
        append(arguments, words(stored_password(hostile.password) + hostile.value));
        return arguments;
    });
}

TEST_F(HostileRecords, GoFromTheDocumentToABrowser) {
    expect_launches(firefox, "firefox_id_290", 290,
                    [](const Hostile& hostile) { return words(hostile.value); });
}

TEST_F(HostileRecords, ThatTheEntryPointTookGoToTheClientToo) {
    const UnwatchedOs unwatched;
    for (const std::string value :
         {"'; touch /tmp/owned; '", "$(touch /tmp/owned)", "`touch /tmp/owned`",
          "x; touch /tmp/owned", "x > /tmp/owned", "*", "{a,b}", "~", "#x", "-f"}) {
        std::string params = "id=290&serverAddress=" + value;
        EXPECT_EQ(qvsetconnections(9, params.data()), 0);
        firefox.forget_calls();
        EXPECT_EQ(qvlaunchclient(290), 0);
        ASSERT_TRUE(test::wait_until([&] { return !firefox.calls().empty(); }));
        EXPECT_EQ(firefox.calls(), StandIn::Calls{words(value)});
    }
}

TEST_F(HostileRecords, UnderAKeyThatNoFieldHasChangeNothing) {
    const UnwatchedOs unwatched;
    for (const std::string& value : hostile_values()) {
        test::store_items({});
        store::change_document([&](store::Document& document) {
            document.set("spiceItem_id_70", "serverAddress", "h");
            document.set("spiceItem_id_70", "disableall", value);
            return true;
        });
        remote_viewer.forget_calls();
        EXPECT_EQ(qvlaunchclient(70), 0);
        ASSERT_TRUE(test::wait_until([&] { return !remote_viewer.calls().empty(); }));
        EXPECT_EQ(remote_viewer.calls(),
                  (StandIn::Calls{{"-f", "--spice-disable-usbredir", "spice://h"}}))
            << testing::PrintToString(value);
    }
}

TEST_F(HostileRecords, OfAnyLengthAreCutToTheirFields) {
    const UnwatchedOs unwatched;
    const StandIn qvplugin("qvplugin");
    const StandIn xrandr("xrandr");
    const std::string cut_to(63, 'x');
    struct Case {
        StandIn* client;
        const char* item;
        unsigned id;
        StandIn::Arguments arguments; ///< some that it must have been given
    };
    const Case cases[] = {
        {&xfreerdp, "rdpItem_id_35", 35, {"/t:" + cut_to, "/v:" + cut_to, "/u:" + cut_to}},
        {&remote_viewer, "spiceItem_id_70", 70, {"spice://" + cut_to + ":" + cut_to}},
        {&vmware_view, "vmwareItem_id_160", 160, {"-s", cut_to, "-u", cut_to, "-d", cut_to}},
        {&vncviewer, "vncItem_id_230", 230, {cut_to}},
        {&firefox, "firefox_id_290", 290, {cut_to}},
    };
    for (const std::size_t size : {63U, 64U, 10239U, 10240U, 100000U}) {
        const std::string value(size, 'x');
        for (const Case& each : cases) {
            test::store_items({test::record_item(each.item, {{"name", value},
                                                             {"serverAddress", value},
                                                             {"port", value},
                                                             {"username", value},
                                                             {"domain", value}})});
            each.client->forget_calls();
            EXPECT_EQ(qvlaunchclient(each.id), 0);
            ASSERT_TRUE(test::wait_until([&] { return !each.client->calls().empty(); }));
            const StandIn::Arguments given = each.client->calls().front();
            for (const std::string& argument : each.arguments) {
                EXPECT_NE(std::find(given.begin(), given.end(), argument), given.end())
                    << each.item << " with " << size;
            }
        }
    }
}

} // namespace qvtc::clients
