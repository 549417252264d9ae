# Where the parts of an installation go, and the name under which desktops know it. The build folder
# has the same layout: the program finds what belongs to it relative to its own place.
include(GNUInstallDirs)
set(QUIV_APPLICATION_ID app.quiv.Controller)
set(QUIV_ZSH_COMPLETIONS_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where zsh looks for completions")

set(QUIV_HELPER_DIR ${CMAKE_INSTALL_LIBEXECDIR}/quiv-controller)
set(QUIV_PLAYER_DIR ${CMAKE_INSTALL_LIBDIR}/quiv-controller)
file(RELATIVE_PATH QUIV_HELPERS_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/quiv-controller)
file(RELATIVE_PATH QUIV_PLAYER_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/quiv-controller)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
cmake_path(SET QUIV_HELPER_OUTPUT_DIR NORMALIZE ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${QUIV_HELPERS_FROM_BIN})
cmake_path(SET QUIV_PLAYER_OUTPUT_DIR NORMALIZE ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${QUIV_PLAYER_FROM_BIN})

# A program that the application starts, for itself alone.
function(quiv_install_helper target)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${QUIV_HELPER_OUTPUT_DIR})
  install(TARGETS ${target} DESTINATION ${QUIV_HELPER_DIR} COMPONENT main)
endfunction()
