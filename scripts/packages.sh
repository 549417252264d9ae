# shellcheck shell=bash disable=SC2034
# The Debian packages this project needs, in one place; sourced by scripts/prepare.sh.
# Why each of them: docs/dependencies.md.

packages_build=(
  cmake
  g++
  libavahi-client-dev
  libavahi-common-dev
  libavahi-core-dev
  libavcodec-dev
  libavformat-dev
  libavutil-dev
  libcpp-httplib-dev
  libcurl4-openssl-dev
  libfuse3-dev
  libgl-dev
  libmpv-dev
  libpng-dev
  libseccomp-dev
  libswscale-dev
  libturbojpeg0-dev
  libwebp-dev
  ninja-build
  pkg-config
  qt6-base-dev
  qt6-declarative-dev
  qt6-svg-dev
)

packages_run=(
  ffmpeg
  fonts-inter
  libgl1-mesa-dri
  libqt6svg6
  qml6-module-qtqml
  qml6-module-qtqml-models
  qml6-module-qtqml-workerscript
  qml6-module-qtquick
  qml6-module-qtquick-controls
  qml6-module-qtquick-layouts
  qml6-module-qtquick-templates
  qml6-module-qtquick-window
  qt6-qpa-plugins
  qt6-wayland
)

packages_package=(
  binutils
  dpkg-dev
  file
  git
)

packages_test=(
  at-spi2-core
  avahi-daemon
  dbus
  gir1.2-atspi-2.0
  iproute2
  mkvtoolnix
  playerctl
  python3
  python3-gi
  qt6-declarative-dev-tools
  sway
  util-linux
  xdotool
  xvfb
)

packages_fuzz=(
  clang-16
  libclang-rt-16-dev
)

packages_bench=(
  libbenchmark-dev
)
