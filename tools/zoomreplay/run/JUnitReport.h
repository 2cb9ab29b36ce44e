// The replays of many records as CI systems read them.
#pragma once

#include <memory>

#include "RecordResult.h"
#include "Records.h"
#include "base/File.h"

namespace pugi {
class xml_document;
}

namespace zoomreplay {

/// JUnit XML with a test case for each record: a failure where it differs, an error where it was
/// not replayed to its end, with all messages.
class JUnitReport {
 public:
    JUnitReport();
    JUnitReport(JUnitReport const&) = delete;
    JUnitReport& operator=(JUnitReport const&) = delete;
    ~JUnitReport();

    void add(Record const& record, RecordResult const& result);

    /// @throws UserError
    void write(File& file);

 private:
    std::unique_ptr<pugi::xml_document> mDocument;
    size_t mTests = 0;
    size_t mFailures = 0;
    size_t mErrors = 0;
    double mSeconds = 0;
};

}  // namespace zoomreplay
