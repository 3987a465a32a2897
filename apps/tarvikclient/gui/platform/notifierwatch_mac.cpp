#include "tarvikclient/gui/platform/notifierwatch.h"

namespace quillon {

class NotifierWatch::Subscription {};

NotifierWatch::NotifierWatch(Listener listener) {
    listener(false);
}

NotifierWatch::~NotifierWatch() = default;

} // namespace quillon
