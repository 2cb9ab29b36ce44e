#include "JUnitReport.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <pugixml.hpp>
#include <string>

#include "base/TerminalText.h"

namespace zoomreplay {
namespace {

// XML has no characters for what terminals obey, escaped or not.
std::string xmlText(std::string_view text) {
    return terminalText(text, '?');
}

std::string secondsText(double seconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f", seconds);
    return text.data();
}

std::string countsText(Counts const& counts) {
    auto const count = [](uint64_t number, char const* what) {
        return std::to_string(number) + ' ' + what;
    };
    std::string const text =
        count(counts.requests, "requests, ") + count(counts.overridden, "overridden, ") +
        count(counts.corrected, "corrected, ") + count(counts.exceptions, "exceptions, ") +
        count(counts.fatal, "fatal");
    return counts.differences.has_value() ? text + ", " + count(*counts.differences, "differences")
                                          : text;
}

std::string messagesText(RecordResult const& result) {
    std::string text;
    for (std::string const& message : result.messages) {
        text += xmlText(message) + '\n';
    }
    return text;
}

// Differences begin with the first one; what ends a replay is told last.
std::string headline(RecordResult const& result) {
    if (result.messages.empty()) {
        return "";
    }
    bool const isFirst = result.ending == Ending::Differs;
    return xmlText(isFirst ? result.messages.front() : result.messages.back());
}

// The library is not built with every standard library: no stream passes between it and the tool.
struct TextWriter : pugi::xml_writer {
    void write(void const* data, size_t size) override {
        text.append(static_cast<char const*>(data), size);
    }

    std::string text;
};

void addTrouble(pugi::xml_node test, RecordResult const& result) {
    auto trouble = test.append_child(result.ending == Ending::Differs ? "failure" : "error");
    trouble.append_attribute("type").set_value(nameOf(result.ending));
    trouble.append_attribute("message").set_value(headline(result).c_str());
    trouble.text().set(messagesText(result).c_str());
}

}  // namespace

JUnitReport::JUnitReport() : mDocument(std::make_unique<pugi::xml_document>()) {
    mDocument->append_child("testsuites").append_child("testsuite");
}

JUnitReport::~JUnitReport() = default;

void JUnitReport::add(Record const& record, RecordResult const& result) {
    std::filesystem::path const path(record.path);
    std::string const folder = path.has_parent_path() ? path.parent_path().string() : ".";
    auto test = mDocument->first_child().first_child().append_child("testcase");
    test.append_attribute("classname").set_value(xmlText(folder).c_str());
    test.append_attribute("name").set_value(xmlText(path.filename().string()).c_str());
    test.append_attribute("time").set_value(secondsText(result.seconds).c_str());
    if (result.ending != Ending::Same) {
        addTrouble(test, result);
    }
    test.append_child("system-out").text().set(countsText(result.counts).c_str());
    if (result.ending == Ending::Same && !result.messages.empty()) {
        test.append_child("system-err").text().set(messagesText(result).c_str());
    }

    ++mTests;
    mFailures += result.ending == Ending::Differs ? 1 : 0;
    mErrors += result.ending > Ending::Differs ? 1 : 0;
    mSeconds += result.seconds;
}

void JUnitReport::write(File& file) {
    auto suite = mDocument->first_child().first_child();
    suite.append_attribute("name").set_value("zoomreplay");
    suite.append_attribute("tests").set_value(std::to_string(mTests).c_str());
    suite.append_attribute("failures").set_value(std::to_string(mFailures).c_str());
    suite.append_attribute("errors").set_value(std::to_string(mErrors).c_str());
    suite.append_attribute("time").set_value(secondsText(mSeconds).c_str());
    TextWriter writer;
    mDocument->save(writer, "  ", pugi::format_indent, pugi::encoding_utf8);
    file.write(writer.text);
}

}  // namespace zoomreplay
