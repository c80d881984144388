#include "platform/log.hpp"

#include <atomic>
#include <cstdio>
#include <mutex>

namespace lunoval::log {

namespace {
std::atomic<bool> useStandardError{false};
std::atomic<Verbosity> currentVerbosity{Verbosity::normal};
std::mutex writeMutex;
}  // namespace

void line(std::string_view text) {
    if (currentVerbosity == Verbosity::quiet) return;
    std::FILE* stream = useStandardError ? stderr : stdout;
    std::scoped_lock lock(writeMutex);
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

void warning(std::string_view text) {
    std::scoped_lock lock(writeMutex);
    std::fputs("lunoval: ", stderr);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

void note(std::string_view text) {
    if (currentVerbosity != Verbosity::quiet) warning(text);
}

void toStandardError(bool enabled) {
    useStandardError = enabled;
}

void setVerbosity(Verbosity verbosity) {
    currentVerbosity = verbosity;
}

}  // namespace lunoval::log
