# A folder is a static library, and its headers can be included only by the libraries that link it: each
# library publishes its headers through a folder of links of its own, so that an include against the
# floors does not build.

# room_headers(TARGET SCOPE HEADER...): headers are named relative to the calling CMakeLists.txt.
function(room_headers target scope)
  set(room "${CMAKE_BINARY_DIR}/rooms/${target}")
  foreach(header IN LISTS ARGN)
    set(source "${CMAKE_CURRENT_SOURCE_DIR}/${header}")
    file(RELATIVE_PATH relative "${CMAKE_SOURCE_DIR}" "${source}")
    get_filename_component(folder "${room}/${relative}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    file(CREATE_LINK "${source}" "${room}/${relative}" SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} "${room}")
endfunction()

# room(TARGET FILES file... [LINKS library...] [PRIVATE_LINKS library...])
function(room target)
  cmake_parse_arguments(ROOM "" "" "FILES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${target} STATIC ${ROOM_FILES})
  set(headers ${ROOM_FILES})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  room_headers(${target} PUBLIC ${headers})
  target_link_libraries(${target} PUBLIC ${ROOM_LINKS} PRIVATE ${ROOM_PRIVATE_LINKS})
endfunction()
