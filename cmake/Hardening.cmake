# What makes a fault in our own code harder to use. Every target gets the same, or they could not
# share precompiled headers.
add_compile_options(-fPIC -fstack-protector-strong -fstack-clash-protection)
add_link_options(
  $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>
  -Wl,-z,relro,-z,now,-z,noexecstack)
add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
# The library's checked functions need an optimising compiler, and hide from the sanitizers.
if(NOT QUIV_SANITIZE)
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
endif()
