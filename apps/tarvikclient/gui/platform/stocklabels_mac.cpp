#include "tarvikclient/gui/platform/stocklabels.h"

namespace quillon {

// wxWidgets puts its own labels on the buttons here, which are those of the catalogue.
void useOwnStockLabels() {}

} // namespace quillon
