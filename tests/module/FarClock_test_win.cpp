#include "host/system/Detour_win.h"
#include "tests/module/ModuleSession.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

// The module after 19 January 2038, when the C library's time of 4 bytes ends.

namespace {

struct FarTime {
    std::int64_t seconds; ///< since 1970-01-01 UTC
    std::string inNotices;
    std::string inLog;
};

const FarTime farTimes[] = {
    {2147483647, "01/19/38 03:14:07", "2038-01-19 03:14:07.250000"},
    {2147483648, "01/19/38 03:14:08", "2038-01-19 03:14:08.250000"},
    {2208988800, "01/01/40 00:00:00", "2040-01-01 00:00:00.250000"},
    {4102444800, "01/01/00 00:00:00", "2100-01-01 00:00:00.250000"},
    {4294967296, "02/07/06 06:28:16", "2106-02-07 06:28:16.250000"},
};

std::int64_t shownSeconds = 0;

/// GetSystemTimeAsFileTime, a quarter of a second past `shownSeconds`.
void WINAPI showTime(LPFILETIME time) {
    constexpr std::int64_t ticksPerSecond = 10000000;
    constexpr std::int64_t secondsFrom1601To1970 = 11644473600;
    const std::int64_t ticks = (shownSeconds + secondsFrom1601To1970) * ticksPerSecond + ticksPerSecond / 4;
    time->dwLowDateTime = static_cast<DWORD>(ticks);
    time->dwHighDateTime = static_cast<DWORD>(ticks >> 32);
}

/// What the C library's functions for times of 4 bytes do at such a time; Wine's yield one of last century.
const std::tm* findNoDate(const std::int32_t*) { return nullptr; }

struct NoDatesOf4Bytes {
    host::Detour utc{L"msvcrt.dll", "gmtime", reinterpret_cast<void*>(&findNoDate)};
    host::Detour utcByItsOtherName{L"msvcrt.dll", "_gmtime32", reinterpret_cast<void*>(&findNoDate)};
    host::Detour local{L"msvcrt.dll", "localtime", reinterpret_cast<void*>(&findNoDate)};
    host::Detour localByItsOtherName{L"msvcrt.dll", "_localtime32", reinterpret_cast<void*>(&findNoDate)};
};

std::mutex linesMutex;
std::vector<std::wstring> reportedLines;

/// ReportEventW, which keeps the lines as they are.
BOOL WINAPI keepLine(HANDLE, WORD, WORD, DWORD, PSID, WORD, DWORD, LPCWSTR* strings, LPVOID) {
    const std::lock_guard lock(linesMutex);
    reportedLines.emplace_back(strings[0]);
    return TRUE;
}

test::Lines timesOfNotices(const test::ModuleSession& session) {
    const std::string name = " timestamp=\"";
    test::Lines times;
    for (const auto& output : session.outputs()) {
        if (output.at("out") == "notice") {
            const std::string xml(output.at("xml").as_string());
            const std::size_t begin = xml.find(name) + name.size();
            times.push_back(xml.substr(begin, xml.find('"', begin) - begin));
        }
    }
    return times;
}

TEST(FarClock, NoticesAndLogLinesBearTheirTime) {
    for (const FarTime& time : farTimes) {
        SCOPED_TRACE(time.seconds);
        test::ModuleSession session;
        reportedLines.clear();
        shownSeconds = time.seconds;
        {
            const host::Detour clock(L"kernel32.dll", "GetSystemTimeAsFileTime",
                                     reinterpret_cast<void*>(&showTime));
            const host::Detour log(L"advapi32.dll", "ReportEventW", reinterpret_cast<void*>(&keepLine));
            const NoDatesOf4Bytes dates;
            std::thread thread([&] { session.start(); }); // in each, the log library asks for the time itself
            thread.join();
        }
        const test::Lines notices = timesOfNotices(session);
        EXPECT_EQ(notices, test::Lines(notices.size(), time.inNotices));
        EXPECT_GE(notices.size(), 5u);

        EXPECT_GE(reportedLines.size(), 20u);
        const std::wstring begin(time.inLog.begin(), time.inLog.end());
        for (const std::wstring& line : reportedLines) {
            EXPECT_EQ(line.substr(0, line.find(L" kes_wren_presentation_plugin[")), begin);
        }
    }
}

} // namespace
