// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "GphotoCamera.h"

#include "CameraFault.h"
#include "Destroy.h"
#include "ListingLog.h"

#include <gphoto2/gphoto2.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <string_view>

namespace bildkurier {

namespace {

using AbilitiesList = std::unique_ptr<CameraAbilitiesList, Destroy<gp_abilities_list_free>>;
using PortList = std::unique_ptr<GPPortInfoList, Destroy<gp_port_info_list_free>>;
using Names = std::unique_ptr<CameraList, Destroy<gp_list_free>>;
using File = std::unique_ptr<::CameraFile, Destroy<gp_file_unref>>;

/// Answer of a camera that is closed or disturbed: opened anew, it may answer again.
constexpr int notOpen = GP_ERROR_IO;

/// Of what this thread opens or lists; null while it does neither.
thread_local ListingLog* listingLog = nullptr;

void readLog(GPLogLevel /*level*/, const char* domain, const char* text, void* /*data*/) {
    if (listingLog != nullptr) listingLog->read(domain, text);
}

Names newNames() {
    CameraList* names = nullptr;
    gp_list_new(&names);
    return Names(names);
}

std::vector<std::string> texts(CameraList* names) {
    std::vector<std::string> all;
    for (int i = 0; i < gp_list_count(names); ++i) {
        const char* name = nullptr;
        if (gp_list_get_name(names, i, &name) == GP_OK && name != nullptr) all.emplace_back(name);
    }
    return all;
}

}  // namespace

const int GphotoCamera::incomplete = GP_ERROR_CORRUPTED_DATA;
const int GphotoCamera::unread = GP_ERROR_NOT_SUPPORTED;
const int GphotoCamera::missing = GP_ERROR_FILE_NOT_FOUND;

/// What the library loads once. Threads that hang in it may outlive everything, so this is
/// never destroyed.
struct GphotoCamera::Library {
    /// Held round calls that may not run at the same time, of several cameras either: what
    /// loads drivers, opens or closes.
    std::mutex mutex;
    CameraAbilitiesList* models = nullptr;  ///< null until the first camera is identified

    static Library& shared() {
        static Library& library = *new Library;
        return library;
    }

    /// With the mutex held.
    CameraAbilitiesList* loadedModels(GPContext* context) {
        if (models != nullptr) return models;
        CameraAbilitiesList* loaded = nullptr;
        gp_abilities_list_new(&loaded);
        gp_abilities_list_load(loaded, context);
        return models = loaded;
    }

    /// Answers whether there is a log.
    bool enter(bool lists, const GphotoCamera& camera) {
        std::unique_lock lock(gate_);
        listings_ += lists ? 1 : 0;
        waitForLog(lock, camera);
        if (calls_ == 0) setLogging();
        ++calls_;
        return log_.has_value();
    }
    void leave(bool lists) {
        const std::lock_guard lock(gate_);
        listings_ -= lists ? 1 : 0;
        --calls_;
        if (calls_ > 0) return;
        setLogging();
        waitsForLog_ = true;
        idle_.notify_all();
    }

private:
    /// A log costs more than a download itself, so there is one only while something is listed;
    /// and it may be changed only while nothing runs that could write to it.
    void setLogging() {
        if (log_.has_value() == (listings_ > 0)) return;
        if (log_) {
            gp_log_remove_func(*log_);
            log_.reset();
        } else {
            log_ = gp_log_add_func(GP_LOG_DEBUG, readLog, nullptr);
        }
    }

    /// What is listed without a log may lack something, so it waits for other cameras' calls to
    /// end: longer than one may be silent, so that what still runs then is a long download or
    /// hangs, and only once for that.
    void waitForLog(std::unique_lock<std::mutex>& lock, const GphotoCamera& camera) {
        constexpr std::chrono::milliseconds step(50);
        const auto isReady = [this] { return log_ || listings_ == 0 || calls_ == 0; };
        auto patience = camera.answerTime_ + camera.answerTime_ / 4;
        while (waitsForLog_ && !isReady() && !camera.cancelled_()) {
            idle_.wait_for(lock, step, isReady);
            patience -= step;
            if (patience <= patience.zero()) waitsForLog_ = false;
        }
    }

    std::mutex gate_;  ///< guards what follows
    std::condition_variable idle_;
    bool waitsForLog_ = true;
    int calls_ = 0;  ///< that run now, of all cameras
    int listings_ = 0;
    std::optional<int> log_;
};

/// Round every call of the library's that may take time.
class GphotoCamera::Call {
public:
    /// `log` reads along what is opened or listed; null for all else.
    explicit Call(const GphotoCamera& camera, ListingLog* log = nullptr)
        : isRead_(Library::shared().enter(log != nullptr, camera)) {
        listingLog = log;
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call() { Library::shared().leave(std::exchange(listingLog, nullptr) != nullptr); }

    /// Whether the log reads along, which other cameras can prevent.
    bool isRead() const { return isRead_; }

private:
    bool isRead_;
};

struct GphotoCamera::Handles {
    std::unique_ptr<GPContext, Destroy<gp_context_unref>> context{gp_context_new()};
    CameraAbilities abilities{};
    PortList ports;
    GPPortInfo port = nullptr;  ///< one of `ports`
    bool isIdentified = false;
    ::Camera* camera = nullptr;  ///< null while closed
};

GphotoCamera::GphotoCamera(std::string port, std::chrono::milliseconds answerTime,
                           std::function<bool()> cancelled)
    : port_(std::move(port)),
      answerTime_(answerTime),
      cancelled_(std::move(cancelled)),
      closed_(notOpen),
      handles_(std::make_unique<Handles>()) {
    const auto cancel = [](GPContext*, void* self) {
        const auto& camera = *static_cast<GphotoCamera*>(self);
        return camera.stopped_ || camera.cancelled_() ? GP_CONTEXT_FEEDBACK_CANCEL
                                                      : GP_CONTEXT_FEEDBACK_OK;
    };
    gp_context_set_cancel_func(handles_->context.get(), cancel, this);
}

GphotoCamera::~GphotoCamera() { close(); }

int GphotoCamera::identify() {
    if (handles_->isIdentified) return GP_OK;
    const Call call(*this);
    Library& library = Library::shared();
    const std::lock_guard lock(library.mutex);
    GPContext* context = handles_->context.get();
    GPPortInfoList* ports = nullptr;
    gp_port_info_list_new(&ports);
    handles_->ports.reset(ports);
    if (const int code = gp_port_info_list_load(ports); code < GP_OK) return code;
    const int index = gp_port_info_list_lookup_path(ports, port_.c_str());
    if (index < GP_OK) return GP_ERROR_UNKNOWN_PORT;
    gp_port_info_list_get_info(ports, index, &handles_->port);

    CameraAbilitiesList* models = library.loadedModels(context);
    const Names found = newNames();
    if (const int code = gp_abilities_list_detect(models, ports, found.get(), context);
        code < GP_OK) {
        return code;
    }
    for (int i = 0; i < gp_list_count(found.get()); ++i) {
        const char* model = nullptr;
        const char* port = nullptr;
        gp_list_get_name(found.get(), i, &model);
        gp_list_get_value(found.get(), i, &port);
        if (model == nullptr || port == nullptr || port != port_) continue;
        const int known = gp_abilities_list_lookup_model(models, model);
        if (known < GP_OK) return known;
        model_ = model == std::string_view("USB PTP Class Camera") ? "" : model;
        const int code = gp_abilities_list_get_abilities(models, known, &handles_->abilities);
        handles_->isIdentified = code >= GP_OK;
        return code;
    }
    return GP_ERROR_MODEL_NOT_FOUND;
}

int GphotoCamera::open() {
    ListingLog log([] {});
    return open(&log);
}

int GphotoCamera::openToAsk() { return open(nullptr); }

int GphotoCamera::open(ListingLog* log) {
    close();
    const int code = tryToOpen(log);
    closed_ = cameraFault(code) == CameraFault::Busy ? code : notOpen;
    return code;
}

int GphotoCamera::tryToOpen(ListingLog* log) {
    if (const int code = identify(); code < GP_OK) return code;
    const Call call(*this, log);
    const std::lock_guard lock(Library::shared().mutex);
    if (const int code = gp_camera_new(&handles_->camera); code < GP_OK) return code;
    gp_camera_set_abilities(handles_->camera, handles_->abilities);
    gp_camera_set_port_info(handles_->camera, handles_->port);
    const int code = gp_camera_init(handles_->camera, handles_->context.get());
    if (code < GP_OK) {
        // Of a camera that was pulled meanwhile, the library counts one use too few, and would
        // keep it for good if only the reference were dropped.
        gp_camera_free(handles_->camera);
        handles_->camera = nullptr;
        return code;
    }
    gp_port_set_timeout(handles_->camera->port, static_cast<int>(answerTime_.count()));
    lacksCards_ = log == nullptr || log->omits() || !call.isRead();
    return code;
}

bool GphotoCamera::isOpen() const { return handles_->camera != nullptr; }

void GphotoCamera::close() {
    if (!isOpen()) return;
    const Call call(*this);
    const std::lock_guard lock(Library::shared().mutex);
    gp_camera_exit(handles_->camera, handles_->context.get());
    gp_camera_unref(handles_->camera);
    handles_->camera = nullptr;
}

std::pair<int, std::string> GphotoCamera::serial() {
    if (!isOpen()) return {closed_, {}};
    const Call call(*this);
    CameraWidget* found = nullptr;
    const int code = gp_camera_get_single_config(handles_->camera, "serialnumber", &found,
                                                 handles_->context.get());
    // What has no such entry answers that all is well, too.
    if (found == nullptr) return {code, {}};
    const std::unique_ptr<CameraWidget, Destroy<gp_widget_free>> widget(found);
    CameraWidgetType type{};
    const char* text = nullptr;
    if (gp_widget_get_type(found, &type) == GP_OK && type == GP_WIDGET_TEXT)
        gp_widget_get_value(found, static_cast<void*>(&text));
    return {code, text == nullptr ? "" : text};
}

/// Names that `call` answers with.
template <class NamesCall>
GphotoCamera::Listing GphotoCamera::list(NamesCall call, const std::string& folder,
                                         ListingLog& log) {
    if (!isOpen()) return {closed_, {}};
    const Call entered(*this, &log);
    const Names names = newNames();
    const int code = call(handles_->camera, folder.c_str(), names.get(), handles_->context.get());
    if (code < GP_OK && (!log.omits() || log.isDisturbed())) return {code, {}};
    if (!entered.isRead()) return {unread, texts(names.get())};
    const bool lacks = log.omits() || (folder == "/" && lacksCards_);
    if (!lacks) return {code, texts(names.get())};
    return {log.isDisturbed() ? notOpen : incomplete, texts(names.get())};
}

GphotoCamera::Listing GphotoCamera::folders(const std::string& folder) {
    ListingLog log([] {});
    return list(gp_camera_folder_list_folders, folder, log);
}

GphotoCamera::Listing GphotoCamera::files(const std::string& folder) {
    ListingLog log(onObjectListed);
    return list(gp_camera_folder_list_files, folder, log);
}

std::pair<int, GphotoCamera::Info> GphotoCamera::info(const std::string& folder,
                                                      const std::string& name) {
    if (!isOpen()) return {closed_, {}};
    const Call call(*this);
    CameraFileInfo found{};
    int code = gp_camera_file_get_info(handles_->camera, folder.c_str(), name.c_str(), &found,
                                       handles_->context.get());
    if (code >= GP_OK && (found.file.fields & GP_FILE_INFO_SIZE) == 0)
        code = GP_ERROR_NOT_SUPPORTED;
    Info info{.size = found.file.size};
    if ((found.file.fields & GP_FILE_INFO_MTIME) != 0 && found.file.mtime > 0)
        info.modified = Date(std::chrono::seconds(found.file.mtime));
    return {code, info};
}

/// Takes the bytes of a file as the library delivers them. It must never be told of an error,
/// which it ignores in one mode and is put out of step by in another; it is cancelled instead.
struct GphotoCamera::Transfer {
    GphotoCamera& camera;
    const Receive& receive;

    void take(const unsigned char* bytes, std::uint64_t count) noexcept {
        if (camera.stopped_) return;
        camera.stopped_ =
            !receive({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    }
};

int GphotoCamera::load(const std::string& folder, const std::string& name, const Receive& receive) {
    static CameraFileHandler handler{
        .size =
            [](void*, std::uint64_t* size) {
                *size = 0;
                return GP_OK;
            },
        .read =
            [](void*, unsigned char*, std::uint64_t* count) {
                *count = 0;
                return GP_OK;
            },
        .write =
            [](void* transfer, unsigned char* bytes, std::uint64_t* count) {
                static_cast<Transfer*>(transfer)->take(bytes, *count);
                return GP_OK;
            }};
    if (!isOpen()) return closed_;
    const Call call(*this);
    Transfer transfer{.camera = *this, .receive = receive};
    stopped_ = false;
    ::CameraFile* made = nullptr;
    if (const int code = gp_file_new_from_handler(&made, &handler, &transfer); code < GP_OK)
        return code;
    const File file(made);
    const int code = gp_camera_file_get(handles_->camera, folder.c_str(), name.c_str(),
                                        GP_FILE_TYPE_NORMAL, made, handles_->context.get());
    return std::exchange(stopped_, false) ? GP_ERROR_CANCEL : code;
}

int GphotoCamera::loadInPieces(const std::string& folder, const std::string& name,
                               std::uint64_t size, const Receive& receive) {
    if (!isOpen()) return closed_;
    const Call call(*this);
    constexpr std::uint64_t pieceBytes = 1 << 20;
    std::vector<char> piece(std::min(pieceBytes, size));
    for (std::uint64_t position = 0; position < size;) {
        if (cancelled_()) return GP_ERROR_CANCEL;
        std::uint64_t count = std::min(pieceBytes, size - position);
        const int code =
            gp_camera_file_read(handles_->camera, folder.c_str(), name.c_str(), GP_FILE_TYPE_NORMAL,
                                position, piece.data(), &count, handles_->context.get());
        if (code < GP_OK || count == 0) return code;
        count = std::min<std::uint64_t>(count, piece.size());
        if (!receive({piece.data(), count})) return GP_ERROR_CANCEL;
        position += count;
    }
    return GP_OK;
}

std::pair<int, std::optional<GphotoCamera::NewFile>> GphotoCamera::newFile(
    std::chrono::milliseconds patience) {
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;
    // A camera may tell of other things without end.
    constexpr Milliseconds atMost(50);
    if (!isOpen()) return {closed_, {}};
    const Call call(*this);
    const auto start = Clock::now();
    while (Clock::now() - start < std::max(patience, atMost)) {
        const auto left = std::chrono::ceil<Milliseconds>(start + patience - Clock::now());
        CameraEventType event{};
        void* found = nullptr;
        const int code = gp_camera_wait_for_event(
            handles_->camera, static_cast<int>(std::max(left, left.zero()).count()), &event, &found,
            handles_->context.get());
        const std::unique_ptr<void, Destroy<std::free>> data(found);
        if (code < GP_OK || event == GP_EVENT_TIMEOUT) return {code, {}};
        const bool hasChanged = event == GP_EVENT_FILE_CHANGED;
        if ((event != GP_EVENT_FILE_ADDED && !hasChanged) || data == nullptr) continue;
        const auto& path = *static_cast<const CameraFilePath*>(data.get());
        // The library notes the computer's clock as the time of a file that has come.
        gp_filesystem_set_info_dirty(handles_->camera->fs, path.folder, path.name,
                                     handles_->context.get());
        const std::string_view folder = path.folder;
        return {code, NewFile{.folder = std::string(folder.substr(folder.starts_with('/') ? 1 : 0)),
                              .name = path.name,
                              .hasChanged = hasChanged}};
    }
    return {GP_OK, {}};
}

}  // namespace bildkurier
