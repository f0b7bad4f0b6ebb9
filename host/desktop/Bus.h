// SPDX-License-Identifier: MIT
// Bus: calls methods of other programs over D-Bus, with the sd-bus functions of libsystemd.
//
// That library is loaded when it is first needed, and not with the program: most commands do not
// need it, and a program with fewer libraries starts faster. [host thread]

#pragma once

#include <gps/Error.h>

#include <memory>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>

namespace host {

/// Why a call failed.
struct BusFailure {
    std::string name; ///< of the error on the bus; empty if the bus cannot be used at all
    std::string message;

    /// Whether there is nobody to answer: no bus, or no program for the service.
    [[nodiscard]] bool isUnavailable() const;
};

/// Whose method is called: an object's interface.
struct BusInterface {
    const char* service;
    std::string object;
    const char* name;
};

class Bus {
public:
    enum class Kind { kSystem, kSession };

    /// Connects to a bus. If that fails, every call fails with the reason.
    explicit Bus(Kind kind);

    /// The answer to a call.
    class Reply {
    public:
        /// Reads the next value of an answer into a variable, as sd_bus_message_read() does: "s"
        /// and "o" into a const char*, which lives as long as this object, "b" into an int, "v"
        /// with the contained type before the variable. Returns whether there was one.
        template <typename... Variables> bool read(const char* types, Variables... variables)
        {
            return message_ != nullptr && functions().read(message_.get(), types, variables...) > 0;
        }

    private:
        friend class Bus;
        struct Release {
            void operator()(sd_bus_message* message) const;
        };
        std::unique_ptr<sd_bus_message, Release> message_;
    };

    /// Calls a method and waits for its answer, for two minutes at most: the user may have to enter
    /// a password first.
    /// @param types      of the arguments, as sd_bus_message_append() takes them; may be empty
    /// @param reply      out: unchanged after a failure
    template <typename... Arguments>
    [[nodiscard]] std::optional<BusFailure> call(const BusInterface& of, const char* method,
                                                 Reply& reply, const char* types,
                                                 Arguments... arguments)
    {
        if (failure_)
            return failure_;
        sd_bus_error error{};
        sd_bus_message* message = nullptr;
        const int result =
            functions().callMethod(bus_.get(), of.service, of.object.c_str(), of.name, method,
                                   &error, &message, types, arguments...);
        if (result < 0)
            return failureOf(error, result);
        reply.message_.reset(message);
        return std::nullopt;
    }

private:
    /// The functions of the library that are used.
    struct Functions {
        decltype(&::sd_bus_open_system) openSystem;
        decltype(&::sd_bus_open_user) openSession;
        decltype(&::sd_bus_flush_close_unref) close;
        decltype(&::sd_bus_set_method_call_timeout) setTimeout;
        decltype(&::sd_bus_call_method) callMethod;
        decltype(&::sd_bus_message_read) read;
        decltype(&::sd_bus_message_unref) unrefMessage;
        decltype(&::sd_bus_error_free) freeError;
    };

    struct Close {
        void operator()(sd_bus* bus) const;
    };

    [[nodiscard]] static const std::optional<Functions>& load();

    /// Precondition: the library was loaded.
    [[nodiscard]] static const Functions& functions() { return *load(); }

    [[nodiscard]] static BusFailure failureOf(sd_bus_error& error, int result);

    std::unique_ptr<sd_bus, Close> bus_;
    std::optional<BusFailure> failure_;
};

} // namespace host
