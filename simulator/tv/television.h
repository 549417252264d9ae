#pragma once

#include "simulator/library/media_library.h"
#include "simulator/library/thumbnails.h"
#include "simulator/tv/identity.h"
#include "simulator/tv/pairing.h"
#include "simulator/tv/player.h"
#include "simulator/tv/storage_mover.h"
#include "simulator/uploads/upload_store.h"

namespace quiv::simulator {

// The TV behind its HTTP interface. Each part guards itself.
struct Television {
    Identity identity;
    MediaLibrary library;
    Pairing pairing;
    Player player;
    StorageMover mover;
    UploadStore uploads;
    Thumbnails thumbnails;
    const bool browsingNeedsPairing;
};

} // namespace quiv::simulator
