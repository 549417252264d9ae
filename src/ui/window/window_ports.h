#pragma once

#include "platform/appearance/desktop_appearance.h"
#include "platform/clock.h"
#include "platform/desktop/file_manager.h"
#include "platform/dialogs/file_dialogs.h"
#include "platform/http/http_session.h"
#include "platform/pictures/picture_decoder.h"
#include "platform/settings_store.h"

namespace quiv {

// What the window itself works with; each outlives it. Files are chosen by `fileDialogs`, which ask
// in the window where the desktop cannot; pictures are fetched over `http` and decoded by
// `pictures`; files are shown in the desktop's `fileManager`.
struct WindowPorts {
    PreferredFileDialogs& fileDialogs;
    HttpSession& http;
    PictureDecoder& pictures;
    FileManager& fileManager;
    Clock& clock;
    DesktopAppearance& appearance;
    SettingsStore& settings;
};

} // namespace quiv
