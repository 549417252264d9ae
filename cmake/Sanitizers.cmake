# QUIV_SANITIZE: "" (none), "address" (with undefined behaviour) or "thread".
set(QUIV_SANITIZE "" CACHE STRING "Sanitizers to build with")
option(QUIV_FUZZ "Build the fuzz targets as libFuzzer programs, which takes clang" OFF)
if(QUIV_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  if(QUIV_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
  endif()
elseif(QUIV_SANITIZE STREQUAL "thread")
  # A fence in a header of Qt is unknown to the sanitizer, which GCC warns of (and warnings are errors).
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -Wno-tsan)
  add_link_options(-fsanitize=thread)
endif()

# Programs that tests start are often made by a fork of a process that has threads.
set(QUIV_TSAN_OPTIONS "TSAN_OPTIONS=ignore_noninstrumented_modules=1:die_after_fork=0:suppressions=${PROJECT_SOURCE_DIR}/cmake/thread_suppressions.txt")
