#include "tarvikclient/gui/platform/toolkitenvironment.h"

namespace quillon {

void prepareEnvironment() {}

void restoreEnvironment() {}

} // namespace quillon
