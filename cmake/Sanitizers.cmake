# QUIV_SANITIZE: "" (none), "address" (with undefined behaviour) or "thread".
set(QUIV_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(QUIV_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(QUIV_SANITIZE STREQUAL "thread")
  # A fence in a header of Qt is unknown to the sanitizer, which GCC warns of (and warnings are errors).
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -Wno-tsan)
  add_link_options(-fsanitize=thread)
endif()
