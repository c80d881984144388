#include "timeline/configuration_app_intent.hpp"

#include "platform/localization.hpp"

namespace lunoval {

std::string ConfigurationAppIntent::title() {
    return l10n::localized("Lunoval Widget");
}

}  // namespace lunoval
