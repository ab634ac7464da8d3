// Calibration files that mean harm: each ends soon, takes little memory and reaches for nothing outside itself.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "calibration/ConfigXmlParser.h"
#include "calibration/DocumentBounds.h"
#include "tests/ServiceTest.h"
#include "tests/fakes/FileCalls.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

struct Cost {
    double seconds;  // of processor time
    double mebibytes;
};

std::string repeated(size_t count, const std::function<std::string(size_t)>& piece) {
    std::string all;
    for (size_t i = 0; i < count; ++i) all += piece(i);
    return all;
}
std::string repeated(size_t count, const std::string& piece) {
    return repeated(count, [&](size_t) { return piece; });
}
std::string named(size_t i) {
    return "n" + std::to_string(i);
}

// So many pieces as the reader lets through.
std::string filled(const std::string& front, const std::function<std::string(size_t)>& piece, const std::string& back) {
    std::string document = front;
    for (size_t i = 0;; ++i) {
        const std::string next = piece(i);
        if (document.size() + next.size() + back.size() > kLongestFile) return document + back;
        document += next;
    }
}

}  // namespace

class HostileDocumentsTest : public PhoneTest {
protected:
    static void parse() { std::make_unique<ConfigXmlParser>()->parser(); }

    // What reading it costs a process of its own, beyond what the process costs.
    static Cost costOfParsing() {
        const auto usageOf = [](const std::function<void()>& body) {
            const pid_t child = fork();
            if (child == 0) {
                body();
                _exit(0);
            }
            int status = 0;
            rusage usage{};
            EXPECT_EQ(wait4(child, &status, 0, &usage), child);
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "it did not end well";
            return usage;
        };
        const rusage before = usageOf([] {});
        const rusage after = usageOf(parse);
        const auto seconds = [](const timeval& time) {
            return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
        };
        return {seconds(after.ru_utime) + seconds(after.ru_stime),
                static_cast<double>(after.ru_maxrss - before.ru_maxrss) / 1024};
    }
};

TEST_F(HostileDocumentsTest, EachEndsSoonInLittleMemory) {
    const auto attributes = [](size_t count) { return repeated(count, [](size_t i) { return named(i) + "='' "; }); };
    const std::string tag = "<a " + attributes(1200) + "/>";
    const std::string nameSpaceTag =
        "<a " + repeated(800, [](size_t i) { return "xmlns:" + named(i) + "='u' "; }) + "/>";
    const std::string longEntity = "<!ENTITY e '" + std::string(15000, '1') + "'>";
    std::string laughs = "<!ENTITY e0 '1111111111'>";
    for (int i = 1; i < 12; ++i) {
        laughs += "<!ENTITY e" + std::to_string(i) + " '" + repeated(10, "&e" + std::to_string(i - 1) + ";") + "'>";
    }
    const struct {
        const char* name;
        std::string document;
    } kDocuments[] = {
        {"entities in entities", "<!DOCTYPE p [" + laughs + "]><p><CTM_WPC><v>&e11;</v></CTM_WPC></p>"},
        {"a long entity, often",
         "<!DOCTYPE p [" + longEntity + "]><p><CTM_WPC>" + repeated(50000, "<v>&e;</v>") + "</CTM_WPC></p>"},
        {"elements by entity", filled(
                                   "<!DOCTYPE p [<!ENTITY e '" + repeated(1000, "<a/>") + "'>]><p>",
                                   [](size_t) { return "&e;<b/>"; }, "</p>")},
        {"nested 100000 deep", repeated(100000, "<d>") + repeated(100000, "</d>")},
        {"nested as deep as goes", repeated(250, "<d>") + repeated(250, "</d>")},
        {"an attribute of a megabyte", "<p a='" + std::string(1000000, 'x') + "'/>"},
        {"100000 attributes", "<p " + attributes(100000) + "/>"},
        {"100000 attributes, some with a >",
         "<p " + repeated(100000, [](size_t i) { return named(i) + (i % 1000 == 0 ? "='>' " : "='' "); }) + "/>"},
        {"many attributes in many tags", filled(
                                             "<p>", [&](size_t) { return tag; }, "</p>")},
        {"declared attributes of many elements",
         filled(
             "<!DOCTYPE p [" + repeated(6000, [](size_t i) { return "<!ATTLIST b " + named(i) + " CDATA ''>"; }) +
                 "]><p>",
             [](size_t) { return "<b/>"; }, "</p>")},
        {"declared attributes",
         filled(
             "<!DOCTYPE p [", [](size_t i) { return "<!ATTLIST p " + named(i) + " CDATA ''>"; }, "]><p/>")},
        {"declared entities", filled(
                                  "<!DOCTYPE p [", [](size_t i) { return "<!ENTITY " + named(i) + " ''>"; }, "]><p/>")},
        {"many name spaces in many tags", filled(
                                              "<p>", [&](size_t) { return nameSpaceTag; }, "</p>")},
        {"identifiers", filled(
                            "<p>", [](size_t i) { return "<a xml:id='" + named(i) + "'/>"; }, "</p>")},
        {"as many elements as fit", filled(
                                        "<p>", [](size_t) { return "<a/>"; }, "</p>")},
        {"as many blocks as fit", filled(
                                      "<p>", [](size_t) { return "<CTM_WPC><v>1</v></CTM_WPC>"; }, "</p>")},
        {"comments", filled(
                         "<p>", [](size_t) { return "<!---->"; }, "</p>")},
    };
    const auto expectLittle = [](const char* name) {
        const Cost cost = costOfParsing();
        printf("%-30s %7.3f s %7.1f MiB\n", name, cost.seconds, cost.mebibytes);
        EXPECT_LT(cost.seconds, 20) << name;  // a third of one in the worst case, but for sanitizers and emulators
        EXPECT_LT(cost.mebibytes, 400) << name;
    };
    for (const auto& hostile : kDocuments) {
        phone.write(fakes::kDefaultCalibration, hostile.document);
        expectLittle(hostile.name);
    }
    phone.write(fakes::kDefaultCalibration, "<p>");
    std::filesystem::resize_file(phone.at(fakes::kDefaultCalibration), 100 << 20);
    expectLittle("100 MiB");
}

TEST_F(HostileDocumentsTest, NobodyAsksForWhatIsOutside) {
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    socklen_t length = sizeof address;
    ASSERT_EQ(getsockname(server, reinterpret_cast<sockaddr*>(&address), &length), 0);
    ASSERT_EQ(listen(server, 8), 0);

    phone.write("/vendor/etc/outside", "1");
    const std::string port = std::to_string(ntohs(address.sin_port));
    for (const std::string& where : {"http://127.0.0.1:" + port + "/outside", "ftp://127.0.0.1:" + port + "/outside",
                                     "file://" + phone.at("/vendor/etc/outside"), std::string("outside")}) {
        const std::string at = " SYSTEM '" + where + "'";
        for (const std::string& document : {
                 "<!DOCTYPE p" + at + "><p>&e;</p>",
                 "<!DOCTYPE p [<!ENTITY e" + at + ">]><p><CTM_WPC><v>&e;</v></CTM_WPC></p>",
                 "<!DOCTYPE p [<!ENTITY % e" + at + "> %e;]><p/>",
                 "<?xml-stylesheet href='" + where +
                     "'?><p xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='" + where + "'/></p>",
             }) {
            phone.write(fakes::kDefaultCalibration, document);
            const fakes::FileCalls files;
            parse();
            EXPECT_THAT(files.opened(), testing::Contains(phone.at(fakes::kDefaultCalibration)));
            for (const std::string& path : files.opened()) {
                EXPECT_THAT(path, testing::AnyOf(phone.at(fakes::kPanelNameNode), phone.at(fakes::kDefaultCalibration)))
                    << document;
            }
            EXPECT_LT(accept(server, nullptr, nullptr), 0) << document;
        }
    }

    // Who does ask is seen.
    const int client = socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const int served = accept(server, nullptr, nullptr);
    EXPECT_GE(served, 0);
    for (const int open : {served, client, server}) close(open);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
