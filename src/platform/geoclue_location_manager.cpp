#include "platform/geoclue_location_manager.hpp"

#include <geoclue.h>

#include <algorithm>
#include <array>
#include <functional>

namespace lunoval {

namespace {

constexpr const char* kDesktopId = "lunoval";
constexpr const char* kService = "org.freedesktop.GeoClue2";
// GeoClue answers a client in milliseconds once its agent has; without an agent it does not
// answer for 25 seconds, longer than a widget may wait.
constexpr double kAuthorizationDeadlineSeconds = 2.0;
constexpr int kPresenceTimeoutMilliseconds = 1000;

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectHandle = std::unique_ptr<T, GObjectUnref>;

struct GErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorHandle = std::unique_ptr<GError, GErrorFree>;

AuthorizationStatus statusAfter(const GError& error) {
    if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED) != FALSE) {
        return AuthorizationStatus::denied;
    }
    return AuthorizationStatus::notDetermined;  // no bus, no service, or it failed
}

// The session with GeoClue. It outlives the manager while GLib still holds answers for it;
// each asynchronous call carries a weak reference and finds nothing to do once it is gone.
class GeoClueLocationManager;

class Session : public std::enable_shared_from_this<Session> {
  public:
    Session(MainQueue& queue, GeoClueLocationManager& owner) : queue_(queue), owner_(&owner) {}

    void start() {
        gclue_client_proxy_create_full(kDesktopId, GCLUE_ACCURACY_LEVEL_EXACT,
                                       GCLUE_CLIENT_PROXY_CREATE_AUTO_DELETE, cancellable_.get(),
                                       &Session::clientCreated, weak());
    }

    // The owner is going; later answers are dropped.
    void end() {
        owner_ = nullptr;
        g_cancellable_cancel(cancellable_.get());
        if (client_) g_signal_handlers_disconnect_by_data(client_.get(), this);
    }
    void giveUp() { g_cancellable_cancel(cancellable_.get()); }

    bool settled = false;
    AuthorizationStatus status = AuthorizationStatus::notDetermined;
    std::optional<Location> lastFix;
    bool wantsOneFix = false;
    bool updating = false;

    void answerWithFix() {
        wantsOneFix = false;
        queue_.async([weak = weak_from_this()] {
            const auto self = weak.lock();
            if (self && self->delegate() != nullptr && self->lastFix) {
                self->delegate()->didUpdateLocations({*self->lastFix});
            }
        });
    }
    void answerWithFailure() {
        wantsOneFix = false;
        queue_.async([weak = weak_from_this()] {
            const auto self = weak.lock();
            if (!self || self->delegate() == nullptr) return;
            const bool denied = self->status == AuthorizationStatus::denied;
            self->delegate()->didFailWithError(
                {.localizedDescription = denied ? "GeoClue refused access to the location."
                                                : "GeoClue could not be reached.",
                 .code = denied ? LocationError::denied : LocationError::locationUnknown});
        });
    }

  private:
    using Weak = std::weak_ptr<Session>;

    [[nodiscard]] PlatformLocationDelegate* delegate() const;

    gpointer weak() { return new Weak(weak_from_this()); }
    // The session an answer is for, if it is still wanted: not after the owner went or the
    // call was given up. Frees the reference either way.
    static std::shared_ptr<Session> claim(gpointer data, const GError* error) {
        const std::unique_ptr<Weak> reference(static_cast<Weak*>(data));
        if (error != nullptr && g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) {
            return nullptr;
        }
        auto self = reference->lock();
        return self && self->owner_ != nullptr ? self : nullptr;
    }

    void settle(AuthorizationStatus result) {
        status = result;
        settled = true;
        if (wantsOneFix || updating) {
            if (status == AuthorizationStatus::authorizedAlways) return;
            answerWithFailure();
        }
    }

    static void clientCreated(GObject* /*source*/, GAsyncResult* result, gpointer data) {
        GError* raw = nullptr;
        GObjectHandle<GClueClient> client(gclue_client_proxy_create_full_finish(result, &raw));
        const ErrorHandle error(raw);
        const auto self = claim(data, error.get());
        if (!self) return;
        if (!client) {
            self->settle(statusAfter(*error));
            return;
        }
        self->client_ = std::move(client);
        g_signal_connect(self->client_.get(), "location-updated",
                         G_CALLBACK(&Session::locationUpdated), self.get());
        gclue_client_call_start(self->client_.get(), self->cancellable_.get(), &Session::started,
                                self->weak());
    }

    static void started(GObject* source, GAsyncResult* result, gpointer data) {
        GError* raw = nullptr;
        const bool ok = gclue_client_call_start_finish(GCLUE_CLIENT(source), result, &raw) != 0;
        const ErrorHandle error(raw);
        const auto self = claim(data, error.get());
        if (!self) return;
        self->settle(ok ? AuthorizationStatus::authorizedAlways : statusAfter(*error));
    }

    static void locationUpdated(GClueClient* /*client*/, const char* /*previous*/, const char* path,
                                gpointer data) {
        auto* self = static_cast<Session*>(data);
        gclue_location_proxy_new_for_bus(G_BUS_TYPE_SYSTEM, G_DBUS_PROXY_FLAGS_NONE, kService, path,
                                         self->cancellable_.get(), &Session::locationRead,
                                         self->weak());
    }

    static void locationRead(GObject* /*source*/, GAsyncResult* result, gpointer data) {
        GError* raw = nullptr;
        GObjectHandle<GClueLocation> location(
            gclue_location_proxy_new_for_bus_finish(result, &raw));
        const ErrorHandle error(raw);
        const auto self = claim(data, error.get());
        if (!self || !location) return;
        self->lastFix = Location{gclue_location_get_latitude(location.get()),
                                 gclue_location_get_longitude(location.get()),
                                 gclue_location_get_accuracy(location.get())};
        if (self->wantsOneFix || self->updating) self->answerWithFix();
    }

    MainQueue& queue_;
    GeoClueLocationManager* owner_;
    GObjectHandle<GCancellable> cancellable_{g_cancellable_new()};
    GObjectHandle<GClueClient> client_;
};

// Runs GLib's default main context until `done` holds or `seconds` have passed.
void iterateUntil(const std::function<bool()>& done, double seconds) {
    const gint64 end = g_get_monotonic_time() + static_cast<gint64>(seconds * G_USEC_PER_SEC);
    while (!done()) {
        const gint64 left = end - g_get_monotonic_time();
        if (left <= 0) return;
        runGLibEvents(static_cast<double>(left) / G_USEC_PER_SEC);
    }
}

class GeoClueLocationManager final : public PlatformLocationManager {
  public:
    explicit GeoClueLocationManager(MainQueue& queue)
        : session_(std::make_shared<Session>(queue, *this)) {
        session_->start();
        // Whether access is granted is read at once, so it is settled here. A service that
        // has not answered by the deadline has not refused: it is taken as granting, and its
        // first fix, if any, decides the rest.
        iterateUntil([this] { return session_->settled; }, kAuthorizationDeadlineSeconds);
        if (!session_->settled) {
            session_->giveUp();
            session_->status = AuthorizationStatus::authorizedAlways;
        }
    }
    ~GeoClueLocationManager() override { session_->end(); }
    GeoClueLocationManager(const GeoClueLocationManager&) = delete;
    GeoClueLocationManager& operator=(const GeoClueLocationManager&) = delete;

    [[nodiscard]] AuthorizationStatus authorizationStatus() const override {
        return session_->status;
    }
    [[nodiscard]] bool isAuthorizedForWidgetUpdates() const override {
        return session_->status == AuthorizationStatus::authorizedAlways;
    }
    [[nodiscard]] std::optional<Location> location() const override { return session_->lastFix; }

    void requestLocation() override {
        session_->wantsOneFix = true;
        answerWhatIsKnown();
    }
    void startUpdatingLocation() override {
        session_->updating = true;
        answerWhatIsKnown();
    }
    void stopUpdatingLocation() override { session_->updating = false; }

    [[nodiscard]] PlatformLocationDelegate* currentDelegate() const { return delegate(); }

  private:
    void answerWhatIsKnown() {
        if (session_->status != AuthorizationStatus::authorizedAlways) {
            session_->answerWithFailure();
        } else if (session_->lastFix) {
            session_->answerWithFix();
        }
    }

    std::shared_ptr<Session> session_;
};

PlatformLocationDelegate* Session::delegate() const {
    return owner_ != nullptr ? owner_->currentDelegate() : nullptr;
}

// A call to the bus itself, or null when it does not answer in time.
GVariant* askBus(GDBusConnection* bus, const char* method, GVariant* parameters) {
    return g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", method, parameters, nullptr,
                                       G_DBUS_CALL_FLAGS_NONE, kPresenceTimeoutMilliseconds,
                                       nullptr, nullptr);
}

bool isRunning(GDBusConnection* bus) {
    GVariant* reply = askBus(bus, "NameHasOwner", g_variant_new("(s)", kService));
    if (reply == nullptr) return false;
    gboolean owned = FALSE;
    g_variant_get(reply, "(b)", &owned);
    g_variant_unref(reply);
    return owned != FALSE;
}

bool isStartable(GDBusConnection* bus) {
    GVariant* reply = askBus(bus, "ListActivatableNames", nullptr);
    if (reply == nullptr) return false;
    GVariantIter* names = nullptr;
    g_variant_get(reply, "(as)", &names);
    bool found = false;
    const char* each = nullptr;
    while (g_variant_iter_loop(names, "&s", &each) != FALSE) {
        found = found || g_strcmp0(each, kService) == 0;
    }
    g_variant_iter_free(names);
    g_variant_unref(reply);
    return found;
}

}  // namespace

bool geoClueIsPresent() {
    GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    if (!bus) return false;
    return isRunning(bus.get()) || isStartable(bus.get());
}

std::unique_ptr<PlatformLocationManager> makeGeoClueLocationManager(MainQueue& queue) {
    return std::make_unique<GeoClueLocationManager>(queue);
}

}  // namespace lunoval
