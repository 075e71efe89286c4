// "qvtcctl doctor" and a real server with a real certificate.
#include "desktop.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* port = "8443";

class DoctorJourney : public Journey {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("openssl");
        Journey::SetUp();
        write_file("/etc/hosts", "127.0.0.1 localhost\n127.0.0.1 pages.lan\n");
        store_record(QVTC_TYPE_WEB,
                     {{"name", "page"}, {"serverAddress", "https://pages.lan:8443/"}});
    }

    /// Serves TLS with a certificate of its own making for that name and so many days.
    static void serve(const std::string& name, int days) {
        ASSERT_EQ(output_of("openssl req -x509 -newkey rsa:2048 -nodes -keyout /tmp/key.pem -out "
                            "/tmp/certificate.pem -subj /CN=" +
                            name + " -addext subjectAltName=DNS:" + name + " -days " +
                            std::to_string(days) + " 2>&1")
                      .status,
                  0);
        output_of(std::string("setsid openssl s_server -quiet -www -accept ") + port +
                  " -key /tmp/key.pem -cert /tmp/certificate.pem >/tmp/tls.log 2>&1 </dev/null &");
        ASSERT_TRUE(wait_until([] { return answers(port); }, patience))
            << read_file("/tmp/tls.log");
    }

    /// The line about the certificate.
    static std::string told(const std::string& environment = "") {
        for (const std::string& line :
             lines_of(output_of(environment + " " QVTC_CONTROL " doctor 288 2>&1").text)) {
            if (line.find(" certificate ") != std::string::npos) return line;
        }
        return "";
    }
};

TEST_F(DoctorJourney, TrustsACertificateThatTheTerminalTrusts) {
    serve("pages.lan", 100);
    const std::string line = told("SSL_CERT_FILE=/tmp/certificate.pem");
    EXPECT_TRUE(line.starts_with("  ok       certificate  It is trusted, and valid until "))
        << line;
}

TEST_F(DoctorJourney, WarnsOfOneThatItDoesNot) {
    serve("pages.lan", 100);
    const std::string line = told();
    EXPECT_TRUE(line.starts_with("  warning  certificate  It is not trusted: self-signed "
                                 "certificate. Issued to CN = pages.lan, valid until "))
        << line;
}

TEST_F(DoctorJourney, WarnsOfOneForAnotherName) {
    serve("other.lan", 100);
    const std::string line = told("SSL_CERT_FILE=/tmp/certificate.pem");
    EXPECT_TRUE(line.starts_with("  warning  certificate  It is not trusted: hostname mismatch."))
        << line;
}

TEST_F(DoctorJourney, WarnsOfOneThatExpiresSoon) {
    serve("pages.lan", 10);
    const std::string line = told("SSL_CERT_FILE=/tmp/certificate.pem");
    EXPECT_TRUE(line.starts_with("  warning  certificate  It expires in ")) << line;
}

TEST_F(DoctorJourney, SaysThatAServerSpeaksNoTls) {
    QVTC_NEED_PROGRAM("python3");
    start_web_server(port);
    EXPECT_EQ(told(), "  problem  certificate  Port 8443 of pages.lan does not speak TLS.");
}

} // namespace
} // namespace qvtc::test
