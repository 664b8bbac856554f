# Warnings are errors everywhere; every program is hardened.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -fstack-protector-strong)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict) # warns of std::string's own operator+ (GCC bug 105651)
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
add_link_options(-Wl,-z,relro,-z,now -Wl,--as-needed)

# The sanitizers bring their own checks of the calls that _FORTIFY_SOURCE wraps.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_compile_options(-U_FORTIFY_SOURCE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
