#include "common/logging/QuillLogConfig.h"

#include "common2/logging/LogCore.h"
#include "tests/support/LogCapture.h"

#include <boost/log/attributes/attribute_value_impl.hpp>
#include <gtest/gtest.h>

namespace {

namespace names = common2::logAttribute;

LogChannelConfig configOf(std::string_view text) {
    std::string error;
    const QuillLogConfig config(text, error);
    EXPECT_EQ(error, "") << text;
    return config.channelConfig();
}

/// Attributes of a record.
class Attributes {
public:
    explicit Attributes(int severity) { put(names::severity, static_cast<Common2LogSeverity>(severity)); }
    Attributes() = default;

    Attributes& channel(const std::string& name) { return put(names::channel, name); }
    Attributes& source(const std::string& name) { return put(names::source, name); }
    operator const boost::log::attribute_value_set&() const { return values; }

private:
    template <class Value>
    Attributes& put(const char* name, const Value& value) {
        values.insert(name, boost::log::attributes::make_attribute_value(value));
        return *this;
    }

    boost::log::attribute_value_set values;
};

/// The lowest severity of such records that is kept; 4 if none is.
template <class Make>
int threshold(const LogChannelConfig& config, Make make) {
    int severity = 0;
    while (severity < 4 && !config(make(severity))) {
        ++severity;
    }
    return severity;
}

int plain(const LogChannelConfig& config) {
    return threshold(config, [](int severity) { return Attributes(severity); });
}

int ofChannel(const LogChannelConfig& config, const std::string& channel) {
    return threshold(config, [&](int severity) { return Attributes(severity).channel(channel); });
}

int ofSource(const LogChannelConfig& config, const std::string& source) {
    return threshold(config, [&](int severity) { return Attributes(severity).source(source); });
}

TEST(QuillLogConfig, GlobalLevelKeepsWhatIsAtOrAboveIt) {
    const LogChannelConfig config = configOf(R"({"global":"DBG_WARN"})");
    EXPECT_FALSE(config(Attributes(0)));
    EXPECT_FALSE(config(Attributes(1)));
    EXPECT_TRUE(config(Attributes(2)));
    EXPECT_TRUE(config(Attributes(3)));
}

TEST(QuillLogConfig, EverySeverityNameHasItsValue) {
    EXPECT_EQ(plain(configOf(R"({"global":"DBG_TRACE"})")), 0);
    EXPECT_EQ(plain(configOf(R"({"global":"DBG_INFO"})")), 1);
    EXPECT_EQ(plain(configOf(R"({"global":"DBG_WARN"})")), 2);
    EXPECT_EQ(plain(configOf(R"({"global":"DBG_ERROR"})")), 3);
}

TEST(QuillLogConfig, WithoutGlobalLevelEverythingIsKept) {
    EXPECT_EQ(plain(configOf("{}")), 0);
    EXPECT_EQ(plain(configOf("[]")), 0);
    EXPECT_EQ(plain(configOf(R"({"global":2})")), 0);
    EXPECT_EQ(plain(LogChannelConfig()), 0);
}

TEST(QuillLogConfig, NameInAnotherCaseIsIgnored) {
    const LogChannelConfig config = configOf(
        R"({"global":"dbg_error","sources":{"s":"dbg_error","t":"WARN"},"channels":{"c":"Dbg_Error","d":""}})");
    EXPECT_EQ(plain(config), 0);
    EXPECT_EQ(ofSource(config, "s"), 0);
    EXPECT_EQ(ofSource(config, "t"), 0);
    EXPECT_EQ(ofChannel(config, "c"), 0);
    EXPECT_EQ(ofChannel(config, "d"), 0);
    EXPECT_TRUE(config.sources.empty());
}

TEST(QuillLogConfig, RecordWithoutSeverityIsDropped) {
    EXPECT_FALSE(configOf("{}")(Attributes()));
    EXPECT_FALSE(configOf(R"({"channels":{"c":"DBG_TRACE"}})")(Attributes().channel("c")));
}

TEST(QuillLogConfig, LongestChannelKeyDecides) {
    const LogChannelConfig config = configOf(
        R"({"global":"DBG_WARN","sources":{"s":"DBG_INFO"},"channels":{"net":"DBG_ERROR","net.tls":"DBG_TRACE"}})");
    EXPECT_EQ(ofChannel(config, "net.tls.x"), 0);
    EXPECT_EQ(ofChannel(config, "net.tls"), 0);
    EXPECT_EQ(ofChannel(config, "network"), 3);
    EXPECT_EQ(ofChannel(config, "net"), 3);
}

TEST(QuillLogConfig, ChannelThatMatchesNothingFallsThroughToSourceAndGlobal) {
    const LogChannelConfig config =
        configOf(R"({"global":"DBG_WARN","sources":{"s":"DBG_INFO"},"channels":{"net":"DBG_ERROR"}})");
    EXPECT_EQ(ofChannel(config, "ne"), 2);
    EXPECT_EQ(threshold(config, [](int severity) { return Attributes(severity).channel("ne").source("s"); }),
              1);
}

TEST(QuillLogConfig, RecordWithoutChannelSkipsTheChannels) {
    const LogChannelConfig config = configOf(
        R"({"global":"DBG_WARN","sources":{"s":"DBG_INFO"},"channels":{"":"DBG_ERROR","s":"DBG_ERROR"}})");
    EXPECT_EQ(plain(config), 2);
    EXPECT_EQ(ofSource(config, "s"), 1);
    EXPECT_EQ(plain(LogChannelConfig{DBG_INFO, {}, nullptr}), 1);
}

TEST(QuillLogConfig, ChannelBeatsSourceAndSourceBeatsGlobalInEitherDirection) {
    const LogChannelConfig config = configOf(
        R"({"global":"DBG_WARN","sources":{"more":"DBG_TRACE","less":"DBG_ERROR"},
            "channels":{"more":"DBG_TRACE","less":"DBG_ERROR"}})");
    const auto both = [&config](const char* channel, const char* source) {
        return threshold(config,
                         [&](int severity) { return Attributes(severity).channel(channel).source(source); });
    };
    EXPECT_EQ(both("more", "less"), 0);
    EXPECT_EQ(both("less", "more"), 3);
    EXPECT_EQ(both("other", "less"), 3);
    EXPECT_EQ(both("other", "more"), 0);
    EXPECT_EQ(both("other", "other"), 2);
}

TEST(QuillLogConfig, SourcesMatchExactly) {
    const LogChannelConfig config = configOf(R"({"global":"DBG_WARN","sources":{"s":"DBG_TRACE"}})");
    EXPECT_EQ(ofSource(config, "s"), 0);
    for (const char* source : {"S", "sx", ""}) {
        EXPECT_EQ(ofSource(config, source), 2) << source;
    }
}

TEST(QuillLogConfig, EmptyChannelKeyIsARuleForEveryChannelThatIsNotEmpty) {
    const LogChannelConfig config = configOf(R"({"global":"DBG_WARN","channels":{"":"DBG_ERROR"}})");
    const test::LogCapture capture;
    EXPECT_EQ(ofChannel(config, "any"), 3);
    EXPECT_EQ(ofChannel(config, ""), 2);
    EXPECT_EQ(plain(config), 2);
    EXPECT_TRUE(capture.records().empty()) << "a filter must not log";
}

TEST(QuillLogConfig, LowestSeverityIsThatOfTheMostTalkativeRule) {
    EXPECT_EQ(configOf("{}").lowestSeverity(), DBG_TRACE);
    EXPECT_EQ(configOf(R"({"global":"DBG_ERROR"})").lowestSeverity(), DBG_ERROR);
    EXPECT_EQ(configOf(R"({"global":"DBG_ERROR","sources":{"s":"DBG_INFO"}})").lowestSeverity(), DBG_INFO);
    EXPECT_EQ(
        configOf(R"({"global":"DBG_ERROR","channels":{"c":"DBG_ERROR","cd":"DBG_WARN"}})").lowestSeverity(),
        DBG_WARN);
    EXPECT_EQ(configOf(R"({"global":"DBG_INFO","channels":{"c":"DBG_ERROR"}})").lowestSeverity(), DBG_INFO);
}

TEST(QuillLogConfig, WhatIsNoJsonIsLoggedWithTheParsersWords) {
    const test::LogCapture capture;
    std::string error;
    const QuillLogConfig config("{\"global\":", error);
    EXPECT_NE(error, "");
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"failed to parse json: " + error,
                                                            "JsonLookup::JsonLookup error: " + error}));
    EXPECT_EQ(capture.records()[1].function, "QuillLogConfig::QuillLogConfig");
    EXPECT_EQ(capture.records()[1].severity, 3);
    EXPECT_EQ(plain(config.channelConfig()), 0);
}

} // namespace
