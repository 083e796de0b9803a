// A library that is to be refused: for its version, or else because it exports nothing more.
#include "ChatPlugin.h"

TALVORA_CHAT_PLUGIN int TalvoraChatPluginVersion() {
    return PLUGIN_VERSION;
}
