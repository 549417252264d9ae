# Debian packages, one for each component: cpack in the build folder of the preset `package`.
set(QUIV_MAINTAINER "Quiv Controller developers <developers@quiv.invalid>" CACHE STRING "Who answers for the packages")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL main player simulator)
set(CPACK_PACKAGE_NAME quiv-controller)
set(CPACK_PACKAGE_CONTACT "${QUIV_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish.cmake)
set(CPACK_QUIV_DEBIAN_FILES ${CMAKE_CURRENT_LIST_DIR})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# dpkg-shlibdeps finds the libraries; what is loaded by name is said here.
set(CPACK_DEBIAN_MAIN_PACKAGE_NAME quiv-controller)
set(CPACK_DEBIAN_MAIN_PACKAGE_SECTION video)
string(JOIN ", " CPACK_DEBIAN_MAIN_PACKAGE_DEPENDS
  fonts-inter qml6-module-qtquick qml6-module-qtquick-layouts qml6-module-qtquick-templates
  qml6-module-qtquick-window qml6-module-qtqml-workerscript)
set(CPACK_DEBIAN_MAIN_PACKAGE_RECOMMENDS "quiv-controller-player ${same_version}, qt6-wayland, libgl1-mesa-dri")
set(CPACK_DEBIAN_MAIN_PACKAGE_SUGGESTS "quiv-tv-simulator, vlc")
set(CPACK_COMPONENT_MAIN_DESCRIPTION "manage and play the videos on a TV in the network
Quiv Controller controls the Quiv TV app on the smart TVs and TV boxes of
the local network. It finds TVs by itself, pairs with them by the code they
show, lists and searches what is stored there, plays it on the TV, uploads and
downloads videos and subtitles, and moves them between the TV's storages.
.
To play a TV's videos on this computer it needs quiv-controller-player.")

set(CPACK_DEBIAN_PLAYER_PACKAGE_NAME quiv-controller-player)
set(CPACK_DEBIAN_PLAYER_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PLAYER_PACKAGE_DEPENDS "quiv-controller ${same_version}")
set(CPACK_DEBIAN_PLAYER_PACKAGE_ENHANCES quiv-controller)
set(CPACK_COMPONENT_PLAYER_DESCRIPTION "player of Quiv Controller
With this library Quiv Controller plays the videos of a TV on this computer,
in its window or on the full screen, and goes on where the TV is.")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME quiv-tv-simulator)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SECTION net)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_RECOMMENDS "ffmpeg")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SUGGESTS quiv-controller)
set(CPACK_COMPONENT_SIMULATOR_DESCRIPTION "simulated TV for Quiv Controller
This program behaves like a TV with the Quiv TV app: it announces itself over
DNS-SD, pairs by a code, and serves its library over HTTP from real files. It
is there to try Quiv Controller without a TV, and to test programs that talk
to one: it has faults on demand.")
include(CPack)
