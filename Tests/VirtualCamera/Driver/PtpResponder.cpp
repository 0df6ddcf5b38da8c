// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PtpResponder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <ctime>
#include <limits>
#include <map>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

/// Containers on the wire.
constexpr std::uint16_t dataContainer = 2;
constexpr std::uint16_t responseContainer = 3;
constexpr std::uint16_t eventContainer = 4;
constexpr std::uint32_t headerBytes = 12;

constexpr std::uint16_t getDeviceInfo = 0x1001;
constexpr std::uint16_t openSession = 0x1002;
constexpr std::uint16_t closeSession = 0x1003;
constexpr std::uint16_t getStorageIds = 0x1004;
constexpr std::uint16_t getStorageInfo = 0x1005;
constexpr std::uint16_t getNumObjects = 0x1006;
constexpr std::uint16_t getObjectHandles = 0x1007;
constexpr std::uint16_t getObjectInfo = 0x1008;
constexpr std::uint16_t getObject = 0x1009;
constexpr std::uint16_t getThumb = 0x100A;
constexpr std::uint16_t getPartialObject = 0x101B;

constexpr std::uint16_t canonSetObjectArchive = 0x9002;
constexpr std::uint16_t canonGetObjectInfo = 0x9021;

constexpr std::uint16_t nikonGetObjectSize = 0x9421;

constexpr std::uint16_t good = 0x2001;
constexpr std::uint16_t notSupported = 0x2005;
constexpr std::uint16_t noSuchObject = 0x2009;
constexpr std::uint16_t noThumbnail = 0x2010;

constexpr std::uint16_t objectAdded = 0x4002;
constexpr std::uint16_t objectRemoved = 0x4003;
constexpr std::uint16_t objectInfoChanged = 0x4007;
constexpr std::uint16_t storeFull = 0x400A;

constexpr std::uint16_t folderFormat = 0x3001;
constexpr std::uint16_t otherFormat = 0x3000;
constexpr std::uint16_t jpegFormat = 0x3801;

constexpr std::int64_t nikonsExtension = 10;
constexpr std::int64_t canonsExtension = 11;

constexpr std::uint32_t everything = 0xFFFFFFFF;

/// A maker's own formats are numbered by the maker.
std::uint16_t formatOf(const PtpObjects::Object& object, bool isCanon) {
    if (object.isFolder) return folderFormat;
    static const std::map<std::string, std::uint16_t> formats{
        {".jpg", jpegFormat}, {".avi", 0x300A}, {".wav", 0x3008}, {".mov", 0x300D},
        {".mp4", 0xB982},     {".tif", 0x380D}, {".nef", 0x380D}};
    std::string extension = object.path.extension();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (isCanon && extension == ".cr3") return 0xB108;
    const auto found = formats.find(extension);
    return found == formats.end() ? otherFormat : found->second;
}

/// The camera's clock shows local time.
std::string cameraTime(const fs::path& path) {
    std::error_code error;
    const auto modified = std::chrono::file_clock::to_sys(fs::last_write_time(path, error));
    const std::time_t seconds =
        std::chrono::floor<std::chrono::seconds>(modified).time_since_epoch().count();
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%S", &local);
    return {text.data(), length};
}

std::int64_t sizeOf(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : static_cast<std::int64_t>(size);
}

/// Counts as far as 32 bits go.
std::uint32_t counted(std::int64_t size) {
    constexpr auto most = std::numeric_limits<std::uint32_t>::max();
    return size > most ? most : static_cast<std::uint32_t>(size);
}

std::vector<std::uint8_t> packetOf(std::uint16_t code, std::uint32_t parameter) {
    PtpPacket packet;
    packet.u32(headerBytes + 4).u16(eventContainer).u16(code).u32(everything).u32(parameter);
    return packet.bytes();
}

}  // namespace

PtpResponder::PtpResponder(Plug plug) : plug_(std::move(plug)) {
    for (const char* name : {"store1", "store2"}) {
        if (const std::string store = plug_.text(name); !store.empty()) stores_.emplace_back(store);
    }
}

/// What was still being written is done meanwhile, though nobody was told.
PtpResponder::~PtpResponder() {
    for (const Event& untold : events_)
        if (untold.isGrowth) noteGrowth(untold.parameter);
}

void PtpResponder::noteGrowth(std::uint32_t handle) {
    early_.erase(handle);
    if (const auto* grown = objects_.find(handle))
        plug_.count("grown " + grown->path.filename().string());
}

void PtpResponder::answer(const Request& request, std::uint16_t code,
                          const std::vector<std::uint32_t>& parameters) {
    PtpPacket packet;
    packet.u32(static_cast<std::uint32_t>(headerBytes + 4 * parameters.size()));
    packet.u16(responseContainer).u16(code).u32(request.transaction);
    for (const std::uint32_t parameter : parameters) packet.u32(parameter);
    outbox_.add(packet);
}

void PtpResponder::answerWith(const Request& request, const PtpPacket& data,
                              const std::vector<std::uint32_t>& parameters) {
    PtpPacket packet;
    packet.u32(static_cast<std::uint32_t>(headerBytes + data.size()));
    packet.u16(dataContainer).u16(request.code).u32(request.transaction).append(data);
    outbox_.add(packet);
    answer(request, good, parameters);
}

void PtpResponder::answerWithFile(const Request& request, std::uint64_t offset,
                                  std::uint64_t most) {
    const auto* object = objects_.find(request.parameters[0]);
    if (object == nullptr) return answer(request, noSuchObject);
    const auto size = static_cast<std::uint64_t>(sizeOf(object->path));
    const std::uint64_t count = std::min(most, size - std::min(size, offset));
    PtpPacket packet;
    packet.u32(counted(static_cast<std::int64_t>(headerBytes + count)));
    packet.u16(dataContainer).u16(request.code).u32(request.transaction);
    outbox_.add(packet, object->path, offset, count);
    answer(request, good, {counted(static_cast<std::int64_t>(count))});
}

void PtpResponder::request(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t mostParameters = 5;
    Request request{.code = static_cast<std::uint16_t>(ptpNumber(bytes, 6, 2)),
                    .transaction = ptpNumber(bytes, 8)};
    for (std::size_t i = 0; i < mostParameters; ++i)
        request.parameters.push_back(ptpNumber(bytes, headerBytes + 4 * i));
    const auto* object = objects_.find(request.parameters[0]);
    const int fault = faultOf(request);
    if (fault > 0) return answer(request, static_cast<std::uint16_t>(fault));
    fault_ = fault;
    switch (request.code) {
        case getDeviceInfo:
            return answerWith(request, deviceInfo());
        case openSession:
            objects_.clear();
            events_.clear();
            early_.clear();
            objects_.scan(stores_, [this](const auto& added) { tellOfGrowth(added); });
            return answer(request, good);
        case closeSession:
            return answer(request, good);
        case getStorageIds:
            return answerWith(request, storageIds());
        case getStorageInfo:
            return answerWith(request, storageInfo());
        case getNumObjects:
            return answer(request, good, {static_cast<std::uint32_t>(selected(request).size())});
        case getObjectHandles: {
            const auto handles = selected(request);
            PtpPacket packet;
            packet.u32(static_cast<std::uint32_t>(handles.size()));
            for (const std::uint32_t handle : handles) packet.u32(handle);
            return answerWith(request, packet);
        }
        case getObjectInfo:
            return object == nullptr ? answer(request, noSuchObject)
                                     : answerWith(request, objectInfo(*object));
        case getObject:
            return answerWithFile(request, 0, std::numeric_limits<std::uint64_t>::max());
        case getPartialObject:
            return answerWithFile(request, request.parameters[1], request.parameters[2]);
        case getThumb:
            return answer(request, noThumbnail);
        case canonGetObjectInfo: {
            const auto* asked = objects_.find(request.parameters[3]);
            return asked == nullptr ? answer(request, noSuchObject)
                                    : answerWith(request, canonEntry(*asked), {1});
        }
        case nikonGetObjectSize:
            if (object == nullptr) return answer(request, noSuchObject);
            return answerWith(request,
                              PtpPacket().u64(static_cast<std::uint64_t>(announcedSize(*object))));
        case canonSetObjectArchive:
            plug_.count("unmarked");
            return answer(request, good);
        default:
            plug_.count("unknown");
            return answer(request, notSupported);
    }
}

PtpPacket PtpResponder::deviceInfo() const {
    constexpr std::uint16_t version = 100;
    std::vector<std::uint16_t> operations{
        getDeviceInfo, openSession,      closeSession,  getStorageIds, getStorageInfo,
        getNumObjects, getObjectHandles, getObjectInfo, getObject,     getThumb};
    if (plug_.number("partial") == 1) operations.push_back(getPartialObject);
    if (plug_.number("marks_new") == 1) {
        operations.push_back(canonGetObjectInfo);
        operations.push_back(canonSetObjectArchive);
    }
    if (plug_.number("extension") == nikonsExtension) operations.push_back(nikonGetObjectSize);
    PtpPacket packet;
    packet.u16(version).u32(
        static_cast<std::uint32_t>(std::max<std::int64_t>(0, plug_.number("extension"))));
    packet.u16(version).text("").u16(0).codes(operations);
    packet.codes(std::array{objectAdded, objectRemoved}).codes({});
    packet.codes(std::array{jpegFormat}).codes(std::array{jpegFormat, folderFormat});
    for (const char* name : {"manufacturer", "model", "version", "serial"})
        packet.text(plug_.text(name));
    return packet;
}

PtpPacket PtpResponder::storageIds() const {
    PtpPacket packet;
    packet.u32(static_cast<std::uint32_t>(stores_.size()));
    for (std::size_t i = 0; i < stores_.size(); ++i) packet.u32(PtpObjects::storeNumber(i));
    return packet;
}

PtpPacket PtpResponder::storageInfo() const {
    constexpr std::uint16_t removable = 4;
    constexpr std::uint16_t cameraFolders = 3;
    constexpr std::uint64_t capacity = 128'000'000'000;
    PtpPacket packet;
    packet.u16(removable).u16(cameraFolders).u16(0).u64(capacity).u64(capacity / 2).u32(1000);
    return packet.text("SD").text("KARTE");
}

std::vector<std::uint32_t> PtpResponder::selected(const Request& request) const {
    const std::uint32_t store = request.parameters[0];
    const std::uint32_t folder = request.parameters[2];
    std::vector<std::uint32_t> handles;
    for (const auto& object : objects_.all()) {
        const bool isInStore = store == everything || object.store == store;
        const bool isInFolder = folder == 0 || object.parent == (folder == everything ? 0 : folder);
        if (object.isThere && isInStore && isInFolder) handles.push_back(object.handle);
    }
    return handles;
}

/// The name of the object, or those of the cards.
std::vector<std::string> PtpResponder::askedAbout(const Request& request) const {
    std::vector<std::string> names;
    const auto* object = objects_.find(request.parameters[0]);
    if (request.code == getObjectInfo && object != nullptr)
        names.push_back(object->path.filename());
    const bool asksForContents = request.code == getObject || request.code == getPartialObject;
    if (asksForContents && object != nullptr)
        names.push_back("contents of " + object->path.filename().string());
    if (request.code != getObjectHandles || request.parameters[2] != everything) return names;
    for (std::size_t i = 0; i < stores_.size(); ++i) {
        const std::uint32_t store = request.parameters[0];
        if (store == everything || store == PtpObjects::storeNumber(i))
            names.push_back(stores_[i].filename());
    }
    return names;
}

/// Whether it is answered still, before the faults begin.
bool PtpResponder::isTooEarly(const std::string& name) const {
    const std::int64_t after = plug_.number("faults_after " + name);
    if (after < 0) return false;
    plug_.count("asked " + name);
    return plug_.counted("asked " + name) <= after;
}

int PtpResponder::faultOf(const Request& request) const {
    for (const std::string& name : askedAbout(request)) {
        const std::string fault = plug_.text("fault_of " + name);
        const std::string counter = "faults-of " + name;
        const std::int64_t most = plug_.number("faults_of");
        if (fault.empty() || isTooEarly(name) || (most >= 0 && plug_.counted(counter) >= most))
            continue;
        plug_.count(counter);
        return std::stoi(fault);
    }
    return 0;
}

std::int64_t PtpResponder::announcedSize(const PtpObjects::Object& object) const {
    if (object.isFolder) return 0;
    const std::string name = object.path.filename();
    if (early_.contains(object.handle)) return plug_.number("early " + name);
    const std::int64_t announced = plug_.number("announce " + name);
    return announced >= 0 ? announced : sizeOf(object.path);
}

PtpPacket PtpResponder::canonEntry(const PtpObjects::Object& object) const {
    constexpr std::uint8_t isNew = 0x20;
    constexpr std::size_t length = 28;
    PtpPacket packet;
    packet.u32(object.handle).u16(formatOf(object, true)).u8(isNew);
    // Size, time and name, which nobody reads here.
    while (packet.size() < length) packet.u8(0);
    return packet;
}

PtpPacket PtpResponder::objectInfo(const PtpObjects::Object& object) const {
    PtpPacket packet;
    packet.u32(object.store)
        .u16(formatOf(object, plug_.number("extension") == canonsExtension))
        .u16(0)
        .u32(counted(announcedSize(object)));
    // No thumbnail: its format, size, width and height, and the picture's width, height, depth.
    packet.u16(0);
    for (int i = 0; i < 6; ++i) packet.u32(0);
    packet.u32(object.parent).u16(object.isFolder ? 1 : 0).u32(0).u32(0);
    const std::string name = object.path.filename();
    const std::string other = plug_.text("called " + name);
    packet.text(other.empty() ? name : other);
    const std::string time = cameraTime(object.path);
    return packet.text(time).text(time).text("");
}

void PtpResponder::tellOf(const PtpObjects::Object& added) {
    events_.push_back({objectAdded, added.handle});
    tellOfGrowth(added);
}

void PtpResponder::tellOfGrowth(const PtpObjects::Object& added) {
    const std::string name = added.path.filename();
    if (plug_.text("early " + name).empty() || plug_.counted("grown " + name) > 0) return;
    early_.insert(added.handle);
    const bool comesAgain = plug_.number("comes_again " + name) == 1;
    events_.push_back({comesAgain ? objectAdded : objectInfoChanged, added.handle, true});
}

/// Spends no more than about a tenth of all time, whatever the cards hold and however often it is
/// called.
void PtpResponder::lookForChanges() {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    if (start < nextLook_) return;
    objects_.scan(
        stores_, [this](const auto& object) { tellOf(object); },
        [this](const auto& object) { events_.push_back({objectRemoved, object.handle}); });
    const auto end = Clock::now();
    nextLook_ = end + 10 * (end - start);
}

std::vector<std::uint8_t> PtpResponder::nextEvent() {
    lookForChanges();
    if (plug_.counted("other-events") < plug_.number("other_events")) {
        plug_.count("other-events");
        events_.push_front({storeFull, PtpObjects::storeNumber(0)});
    }
    if (events_.empty()) return {};
    const Event next = events_.front();
    events_.pop_front();
    if (next.isGrowth) noteGrowth(next.parameter);
    return packetOf(next.code, next.parameter);
}

}  // namespace bildkurier
