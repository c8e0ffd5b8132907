// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The program without its devices, fed with reports.
//
//   poll-cost list             prints the names of the loads
//   poll-cost time LOAD COUNT  prints the nanoseconds of each poll, from the report in hand to the
//                              views set
//   poll-cost follow LOAD COUNT
//                              prints the nanoseconds that each poll takes longer for one follower
//   poll-cost run COUNT        that many polls of each load, each poll with the turn of the event
//                              loop that follows it: to be run under callgrind, which counts what
//                              onePoll() costs and begins anew with each choose()
//   poll-cost grow COUNT       that many polls of all loads by turns; prints the private memory in
//                              KiB at each hundredth of the way
//   poll-cost --settings TEXT ...  each of them with these settings

#include "app/ReadingReportDelegate.h"
#include "console/ReadingFeed.h"
#include "console/SingleInstanceRequest.h"
#include "sockets/LocalSocket.h"
#include "tests/support/LaunchedApplication.h"

#include <QMainWindow>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace {

using Report = std::vector<std::uint8_t>;

/// Reports that come by turns, in the unit of this row.
struct Load
{
    const char *name;
    QRadioButton *PostalScaleAppDelegate::*row;
    std::vector<Report> reports;
};

const std::vector<Load> &loads()
{
    static const std::vector<Load> all{
        {"grams, steady", &PostalScaleAppDelegate::rg5, {{0x01, 0x34, 0x12}}},
        {"grams, changing",
         &PostalScaleAppDelegate::rg5,
         {{0x01, 0x34, 0x12}, {0x01, 0x35, 0x12}, {0x01, 0x67, 0x05}}},
        {"pounds and ounces, steady", &PostalScaleAppDelegate::rg2, {{0x03, 0x34, 0x12}}},
        {"pounds and fraction, steady", &PostalScaleAppDelegate::rg3, {{0x07, 0x34, 0x12}}},
        {"pounds and fraction, changing",
         &PostalScaleAppDelegate::rg3,
         {{0x07, 0x34, 0x12}, {0x07, 0x35, 0x12}, {0x07, 0x67, 0x05}}},
        {"overload", &PostalScaleAppDelegate::rg5, {{0x04, 0x00, 0x00}}},
    };
    return all;
}

const Load *loadNamed(std::string_view name)
{
    for (const Load &load : loads()) {
        if (load.name == name)
            return &load;
    }
    return nullptr;
}

/// By the clock that the tests' own does not stand in for.
std::int64_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC_RAW, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// Its name is what callgrind is told to collect.
[[gnu::noinline]] void onePoll(LaunchedApplication &program)
{
    program.link.get_device_rawdata();
    LaunchedApplication::turn();
}

class Bench
{
public:
    Bench()
        : m_program(LaunchedApplication::Scale::Present)
    {
        // The lines go where they would go without a test that reads them.
        qInstallMessageHandler(nullptr);
        m_program.stopPolling();
        LaunchedApplication::turn();
    }

    [[gnu::noinline]] void choose(const Load &load)
    {
        (m_program.delegate.*load.row)->click();
        // The unit's own first drawing, and fonts and pictures that are met for the first time: not
        // what a poll takes.
        for (std::size_t i = 0; i < 2 * load.reports.size(); ++i) {
            hand(load);
            m_program.link.get_device_rawdata();
            LaunchedApplication::turn();
        }
    }

    void poll(const Load &load)
    {
        hand(load);
        onePoll(m_program);
    }

    std::int64_t nanosecondsOfPoll(const Load &load)
    {
        hand(load);
        const std::int64_t start = now();
        m_program.link.get_device_rawdata();
        const std::int64_t taken = now() - start;
        LaunchedApplication::turn();
        return taken;
    }

    /// A whole reading of the poll timer's, with what comes of it shortly after.
    void read(const Load &load)
    {
        m_program.read(load.reports[m_next++ % load.reports.size()]);
        LaunchedApplication::pass(400ms);
    }

    ReadingReportDelegate &source()
    {
        return dynamic_cast<ReadingReportDelegate &>(m_program.delegate);
    }

private:
    void hand(const Load &load)
    {
        m_program.hidapi.sent.clear();
        m_program.hidapi.reports.push_back(load.reports[m_next++ % load.reports.size()]);
    }

    LaunchedApplication m_program;
    std::size_t m_next = 0;
};

int privateKibibytes()
{
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    int sum = 0;
    if (!file.open(QIODevice::ReadOnly))
        return sum;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("Private_Dirty:"))
            sum += line.simplified().split(' ').at(1).toInt();
    }
    return sum;
}

int list()
{
    for (const Load &load : loads())
        std::puts(load.name);
    return 0;
}

int time(const Load &load, int count)
{
    Bench bench;
    bench.choose(load);
    for (int i = 0; i < count; ++i)
        std::printf("%lld\n", static_cast<long long>(bench.nanosecondsOfPoll(load)));
    return 0;
}

/// A follower that reads at once, and the time that telling it takes.
class Followed
{
public:
    explicit Followed(const ReadingReportDelegate &source)
        : m_feed(source)
    {
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, m_ends.data()) != 0)
            return;
        m_socket.emplace(m_ends[0]);
        // Who waits for a signal is told in the order of coming.
        QObject::connect(&source, &ReadingReportDelegate::reportDue, &m_feed,
                         [this] { m_start = now(); });
        m_feed.adopt(followRequest(), *m_socket);
        QObject::connect(&source, &ReadingReportDelegate::reportDue, &m_feed,
                         [this] { m_taken += now() - m_start; });
        read();
    }
    ~Followed() { close(m_ends[1]); }
    Followed(const Followed &) = delete;
    Followed &operator=(const Followed &) = delete;

    /// In nanoseconds, since the last call.
    std::int64_t taken() { return std::exchange(m_taken, 0); }

    /// Whether a line was there.
    bool read()
    {
        std::array<char, 4096> lines{};
        return ::read(m_ends[1], lines.data(), lines.size()) > 0;
    }

private:
    std::array<int, 2> m_ends{-1, -1};
    std::optional<LocalSocket> m_socket;
    ReadingFeed m_feed;
    std::int64_t m_start = 0;
    std::int64_t m_taken = 0;
};

int follow(const Load &load, int count)
{
    Bench bench;
    bench.choose(load);
    Followed followed(bench.source());
    bool isTold = true;
    for (int i = 0; i < count; ++i) {
        bench.read(load);
        std::printf("%lld\n", static_cast<long long>(followed.taken()));
        isTold = followed.read() && isTold;
    }
    return isTold || load.reports.size() == 1 ? 0 : 1;
}

void runEach(Bench &bench, int count)
{
    for (const Load &load : loads()) {
        bench.choose(load);
        for (int i = 0; i < count; ++i)
            bench.poll(load);
    }
}

int runOnce(int count)
{
    Bench bench;
    runEach(bench, count);
    return 0;
}

int grow(int count)
{
    constexpr int steps = 100;
    Bench bench;
    for (int step = 0; step <= steps; ++step) {
        std::printf("%d\n", privateKibibytes());
        runEach(bench, count / steps / static_cast<int>(loads().size()));
    }
    return 0;
}

int run(const std::vector<std::string> &words)
{
    const std::string mode = words.empty() ? std::string() : words.front();
    const int count = words.size() > 1 ? std::atoi(words.back().c_str()) : 0;
    if (mode == "list")
        return list();
    if (mode == "run" && count > 0)
        return runOnce(count);
    if (mode == "grow" && count > 0)
        return grow(count);
    if (mode == "time" && count > 0 && loadNamed(words[1]) != nullptr)
        return time(*loadNamed(words[1]), count);
    if (mode == "follow" && count > 0 && loadNamed(words[1]) != nullptr)
        return follow(*loadNamed(words[1]), count);
    std::fputs("usage: poll-cost [--settings TEXT] "
               "list | time LOAD COUNT | follow LOAD COUNT | run COUNT | grow COUNT\n",
               stderr);
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() > 1 && words.front() == "--settings") {
        storedsettings::store(QByteArray::fromStdString(words[1]));
        words.erase(words.begin(), words.begin() + 2);
    }
    return run(words);
}
