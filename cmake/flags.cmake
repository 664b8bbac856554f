# Warnings are errors everywhere; every program is hardened.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -fstack-protector-strong)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict) # warns of std::string's own operator+ (GCC bug 105651)
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
add_link_options(-Wl,-z,relro,-z,now -Wl,--as-needed)
# A program's own relocations in a form that is read at a glance, where the linker knows it.
include(CheckLinkerFlag)
check_linker_flag(CXX -Wl,-z,pack-relative-relocs APPLIANCE_PACKS_RELOCATIONS)
if(APPLIANCE_PACKS_RELOCATIONS)
  add_link_options(-Wl,-z,pack-relative-relocs)
endif()

# The sanitizers bring their own checks of the calls that _FORTIFY_SOURCE wraps.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_compile_options(-U_FORTIFY_SOURCE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
