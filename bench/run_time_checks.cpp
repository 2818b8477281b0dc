#include "run_time_checks.h"

#ifdef PEER_SPDLOG
#include <spdlog/spdlog.h>
#endif
#ifdef PEER_GLOG
#include <glog/logging.h>
#endif

void EmptyCall(int, char const*, char const*) {}

#ifdef PEER_SPDLOG
void SpdlogCheck(int, char const*, char const* text) {
    spdlog::debug(text);
}
#endif

#ifdef PEER_GLOG
void GlogCheck(int level, char const*, char const* text) {
    VLOG(level) << text;
}
#endif
