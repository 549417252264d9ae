#pragma once

#include "simulator/identity.h"
#include "simulator/media_library.h"
#include "simulator/pairing.h"
#include "simulator/player.h"
#include "simulator/storage_mover.h"
#include "simulator/thumbnails.h"
#include "simulator/upload_store.h"

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
