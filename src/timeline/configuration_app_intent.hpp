#pragma once

#include <string>

namespace lunoval {

// The configuration of every widget kind. It carries no values: the widgets have nothing for
// the user to edit, and the provider does not read it.
struct ConfigurationAppIntent {
    // The name the widget's edit sheet shows, in the device language.
    static std::string title();
};

}  // namespace lunoval
