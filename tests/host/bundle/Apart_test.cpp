#include "host/bundle/Apart.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <unistd.h>

namespace {

using host::bundle::ApartOutcome;
using host::bundle::LineTaker;
using host::bundle::runApart;

constexpr std::chrono::milliseconds longTime{600'000};

TEST(Apart, HandsOverTheLinesOfTheWork) {
    const pid_t own = ::getpid();
    const ApartOutcome outcome = runApart(
        [own](const LineTaker& taker) {
            taker("first");
            taker(own == ::getpid() ? "same process" : "another process");
        },
        longTime);
    EXPECT_EQ(outcome.lines, "first\nanother process\n");
    EXPECT_EQ(outcome.problem, "");
}

TEST(Apart, TakesMoreThanAPipeHolds) {
    const std::string line(1'000'000, 'x');
    const ApartOutcome outcome = runApart([&](const LineTaker& taker) { taker(line); }, longTime);
    EXPECT_EQ(outcome.lines, line + "\n");
}

TEST(Apart, KeepsWhatCameBeforeACrash) {
    const ApartOutcome outcome = runApart(
        [](const LineTaker& taker) {
            taker("before");
            ::kill(::getpid(), SIGKILL);
        },
        longTime);
    EXPECT_EQ(outcome.lines, "before\n");
    EXPECT_EQ(outcome.problem, "the module crashed: Killed");
}

TEST(Apart, TellsOfWorkThatEndsTheProcess) {
    EXPECT_EQ(runApart([](const LineTaker&) { ::_exit(3); }, longTime).problem,
              "the module ended the process with code 3");
}

TEST(Apart, GivesUpWorkThatHangs) {
    const ApartOutcome outcome = runApart([](const LineTaker&) { ::pause(); }, std::chrono::milliseconds(0));
    EXPECT_EQ(outcome.problem, "the module did not come to an end and was given up");
}

} // namespace
