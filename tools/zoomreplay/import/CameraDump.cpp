// Finds the static characteristics among all that a camera service prints.
#include "CameraDump.h"

#include <algorithm>
#include <map>
#include <set>

#include "CameraTags.h"
#include "OpenSessions.h"
#include "forms/Forms.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

using Kind = DumpTitle::Kind;

std::optional<DumpTitle> titleOf(std::string_view line) {
    auto const title = serviceDumpTitle(line);
    return title.has_value() ? title : moduleDumpTitle(line);
}

/// "android.lens.info.availableFocalLengths (90002): float[1]" and what stands behind it.
struct TagLine {
    CameraTag const* tag = nullptr;
    std::optional<size_t> count;  // empty: not of the tag's type
    std::string_view values;
};

TagLine parseTagLine(std::string_view line) {
    TagLine result{findCameraTag(line.substr(0, line.find(' '))), {}, {}};
    auto const colon = line.find("): ");
    if (result.tag == nullptr || colon == std::string_view::npos) {
        return result;
    }
    line.remove_prefix(colon + 3);
    if (!skip(line, result.tag->type) || !skip(line, "[")) {
        return result;
    }
    auto const count = scenario::takeNumber<size_t>(line);
    bool const isCount = count.has_value() && skip(line, "]");
    if (isCount && (line.empty() || line.find_first_not_of(' ') == line.find('['))) {
        result.count = count;
        result.values = line;
    }
    return result;
}

class Parser {
 public:
    void take(std::string_view line, uint64_t lineNumber) {
        if (mTag != nullptr && isValues(line)) {
            addValues(line);
            return;
        }
        endTag();
        if (auto const title = titleOf(line)) {
            begin(*title);
        } else if (mIsInside) {
            mTagLine = lineNumber;
            beginTag(line);
        } else {
            mSessions.take(line);
        }
    }

    CameraDump finish() {
        endTag();
        CameraDump dump;
        for (auto& camera : mCameras) {
            splitPhysicalIds(camera);
        }
        dump.cameras = withoutRepetitions();
        dump.sessions = mSessions.finish();
        count(dump);
        return dump;
    }

 private:
    static constexpr size_t kLongestValues = size_t{1} << 16U;

    static bool isValues(std::string_view line) {
        return line.front() == '[' ||
               line.find_first_not_of("0123456789+-.eE[] ") == std::string_view::npos;
    }

    void begin(DumpTitle const& title) {
        if (title.kind == Kind::Announcement) {
            (title.id.empty() ? mAnnouncedIds : mAnnounced[title.id]) = title.number;
            return;
        }
        mIsInside = false;
        mSessions.end();
        if (title.kind == Kind::Camera) {
            mNames.insert(title.name);
            mIds.insert(title.id);
            mPublicId = title.id;
            beginCamera(title.id, "");
        } else if (title.kind == Kind::PhysicalCamera && !mPublicId.empty()) {
            beginCamera(title.id, mPublicId);
        } else if (title.kind == Kind::Open) {
            mSessions.begin(title.id.empty() ? mPublicId : title.id);
        } else {
            mPublicId.clear();
        }
    }

    void beginCamera(std::string const& id, std::string const& logicalId) {
        mIsInside = isPrintableId(id);
        if (mIsInside) {
            CameraStatics& camera = mCameras.emplace_back();
            camera.id = id;
            camera.logicalId = logicalId;
        }
    }

    void beginTag(std::string_view line) {
        auto const tagLine = parseTagLine(line);
        mTag = tagLine.tag;
        mCount = tagLine.count;
        addValues(tagLine.values);
    }

    void addValues(std::string_view values) {
        if (mValues.size() <= kLongestValues) {
            mValues.append(values).append(" ");
        }
    }

    // Where values break off at the end of a line is known only by the line that follows.
    void endTag() {
        if (mTag != nullptr) {
            setCameraTag(mCameras.back(), *mTag, splitWords(mValues), mCount,
                         "line " + std::to_string(mTagLine));
        }
        mTag = nullptr;
        mValues.clear();
    }

    void splitPhysicalIds(CameraStatics& camera) const {
        if (!camera.joinedIds.has_value()) {
            return;
        }
        std::set<std::string> known;
        for (auto const& other : mCameras) {
            known.insert(other.id);
        }
        camera.physicalIds = splitIds(*camera.joinedIds, {known.begin(), known.end()});
        if (camera.physicalIds.empty()) {
            camera.unreadable[tag::kPhysicalIds] =
                '[' + camera.joinedIds->characters + "], which in no way, or in several, are " +
                std::to_string(camera.joinedIds->count) + " ids of this phone's cameras";
        }
    }

    // An older interface to a camera may be printed before the one that describes it.
    std::vector<CameraStatics> withoutRepetitions() {
        std::vector<CameraStatics> cameras;
        for (auto& camera : mCameras) {
            auto const known =
                std::find_if(cameras.begin(), cameras.end(),
                             [&](CameraStatics const& other) { return other.id == camera.id; });
            if (known == cameras.end()) {
                cameras.push_back(std::move(camera));
            } else if (!known->hasTags) {
                *known = std::move(camera);
            }
        }
        return cameras;
    }

    // Providers count their devices, of which one camera may have two; the service its cameras.
    void count(CameraDump& dump) const {
        size_t devices = 0;
        for (auto const& [provider, number] : mAnnounced) {
            devices += number;
        }
        bool const lacksDevices = devices > mNames.size();
        dump.announced = lacksDevices ? devices : mAnnouncedIds;
        dump.described = lacksDevices ? mNames.size() : mIds.size();
    }

    std::vector<CameraStatics> mCameras;
    OpenSessionReader mSessions;
    std::map<std::string, size_t> mAnnounced;  // devices by provider
    size_t mAnnouncedIds = 0;                  // cameras
    std::set<std::string> mNames;              // of the devices that were there
    std::set<std::string> mIds;                // of their cameras
    bool mIsInside = false;                    // of a camera's characteristics, the last camera's
    std::string mPublicId;                     // of the description, where it is a camera's
    CameraTag const* mTag = nullptr;
    uint64_t mTagLine = 0;
    std::optional<size_t> mCount;  // of the tag's values, as announced
    std::string mValues;
};

}  // namespace

CameraDump readCameraDump(PhoneText& text) {
    auto line = text.next();
    if (line.has_value() && isCharacteristicsJson(*line)) {
        return readCharacteristicsJson(*line, text);
    }
    Parser parser;
    for (; line.has_value(); line = text.next()) {
        parser.take(*line, text.lineNumber());
    }
    return parser.finish();
}

}  // namespace zoomreplay
