/// Setting up logging for the life of a module.
#pragma once

#include <boost/log/attributes/attribute_set.hpp>
#include <boost/log/sinks/sink.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

/// While it lives, the log core has this system's attributes, filter and platform sink. The destructor takes
/// away what the constructor added, so that the module can be unloaded. One object a process, made before
/// anything logs that is to be seen. Nothing here throws: logging that can't be set up is left out.
class QuillBaseLogging {
public:
    /// Sets up attributes, a filter that starts at DBG_INFO, the sink and the administrator's rules.
    /// @param sourceName value of "Source", and the name under which the platform's log shows the lines; with
    ///                   an empty name there is no sink
    explicit QuillBaseLogging(std::string_view sourceName) noexcept;
    QuillBaseLogging(const QuillBaseLogging&) = delete;
    QuillBaseLogging& operator=(const QuillBaseLogging&) = delete;
    ~QuillBaseLogging();

    /// Makes the rules in `logconfig.json` of the machine's data folder the filter. A file that is missing or
    /// is no JSON is logged and leaves the filter as it is.
    void applyConfigFile() noexcept;

private:
    void addAttribute(const char* name, const boost::log::attribute& attribute);
    void addClockAndIds();
    void addFilterAndSource(std::string_view sourceName);
    void addSink(std::string_view sourceName);

    std::vector<boost::log::attribute_set::iterator>
        attributes;                                  ///< those that are ours among the global ones
    boost::shared_ptr<boost::log::sinks::sink> sink; ///< null if there is none
    std::unique_ptr<std::byte[]> reserve; ///< for the destructor, in case memory has run out by then
};
