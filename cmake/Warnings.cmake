# Every target of ours links to quiv_warnings; warnings are errors.
add_library(quiv_warnings INTERFACE)
target_compile_options(quiv_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wcast-align -Wformat=2 -Werror)
target_compile_definitions(quiv_warnings INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS)
