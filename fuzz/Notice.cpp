// A notice that is built, printed, read and printed again.

#include "fuzz/Require.h"
#include "xml/UiVocabulary.h"
#include "xml/XmlUINotice.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

/// Names are the plugin's own words; texts come from anywhere, but hold no NUL.
std::string takeText(FuzzedDataProvider& input) {
    std::string text = input.ConsumeRandomLengthString(40);
    std::erase(text, '\0');
    return text;
}

const char* takeName(FuzzedDataProvider& input) {
    static constexpr std::array<const char*, 8> names{"value", "label",   "tooltip", "hidden",
                                                      "color", "listrow", "a-b.c:d", "OnPress"};
    return input.PickValueInArray(names);
}

/// What was set on a control, by its id.
using Expected = std::map<std::string, std::map<std::string, std::string>>;

void addControl(FuzzedDataProvider& input, XmlUINotice& notice, std::vector<XmlNode>& parents,
                Expected& expected) {
    const std::string id = "c" + std::to_string(input.ConsumeIntegralInRange(0, 9));
    const auto type = static_cast<UiCtrlType>(input.ConsumeIntegralInRange(0, 18));
    const XmlNode parent = parents[input.ConsumeIntegralInRange<std::size_t>(0, parents.size() - 1)];
    XmlUICtrl control = notice.addCtrl(type, id.c_str(), parent);
    fuzz::require(!control.isNull(), "a control is added or found");
    const char* name = takeName(input);
    const std::string value = takeText(input);
    control.setAttribute(name, value.c_str());
    expected[id][name] = value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool isPopup = input.ConsumeBool();
    XmlUINotice notice(isPopup ? UiNoticeType::Popup : UiNoticeType::Update, takeText(input).c_str(),
                       "module");
    std::vector<XmlNode> parents{notice.getRoot()};
    Expected expected;
    while (input.remaining_bytes() > 0 && parents.size() < 500) {
        if (input.ConsumeBool()) {
            addControl(input, notice, parents, expected);
        } else {
            const auto parent = input.ConsumeIntegralInRange<std::size_t>(0, parents.size() - 1);
            XmlNode child = parents[parent].addChild(takeName(input));
            child.setValue(takeText(input).c_str());
            parents.push_back(child);
        }
    }
    const std::string printed = notice.serialize();
    XmlUINotice read(UiNoticeType::Update, nullptr, nullptr);
    fuzz::require(read.parse(printed.c_str()), "what is printed can be read");
    fuzz::require(read.getType() == notice.getType(), "as the same kind of notice");
    for (const auto& [id, attributes] : expected) {
        const XmlUICtrl control = read.addCtrl(UiCtrlType::Label, id.c_str());
        for (const auto& [name, value] : attributes) {
            fuzz::require(control.getAttribute(name.c_str()) == value, "with every attribute: " + name);
        }
    }
    const std::string again = read.serialize();
    XmlUINotice last(UiNoticeType::Update, nullptr, nullptr);
    fuzz::require(last.parse(again.c_str()) && last.serialize() == again, "and stays as it is from then on");
    return 0;
}
