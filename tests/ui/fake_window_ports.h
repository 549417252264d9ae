#pragma once

#include "support/fake_appearance.h"
#include "support/fake_clock.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_manager.h"
#include "support/fake_http_session.h"
#include "support/fake_picture_decoder.h"
#include "ui/presenters/window_presenter.h"

namespace quiv {

// What a window works with, in the test's hand.
struct FakeWindowPorts {
    FakeDesktopDialogs dialogs;
    FakeHttpSession http;
    FakePictureDecoder pictures;
    FakeFileManager fileManager;
    FakeClock clock;
    FakeAppearance appearance;
    WindowPorts ports{dialogs.preferred, http, pictures, fileManager, clock, appearance,
                      dialogs.settings};
};

} // namespace quiv
