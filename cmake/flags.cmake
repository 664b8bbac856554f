# Warnings are errors everywhere; every program is hardened.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -fstack-protector-strong)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
add_link_options(-Wl,-z,relro,-z,now -Wl,--as-needed)

# The sanitizers bring their own checks of the calls that _FORTIFY_SOURCE wraps.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_compile_options(-U_FORTIFY_SOURCE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
