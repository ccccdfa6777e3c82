# One library per room of the house, so that a room that reaches upward does not link.

add_library(tavora_options INTERFACE)
target_include_directories(tavora_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_definitions(tavora_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
  $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)
target_compile_options(tavora_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
if(TAVORA_FUZZ) # by clang, whose warnings are others
  target_compile_options(tavora_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(tavora_options INTERFACE -fsanitize=address,undefined)
else()
  target_compile_options(tavora_options INTERFACE -Werror)
endif()
if(TAVORA_SANITIZE)
  target_compile_options(tavora_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tavora_options INTERFACE -fsanitize=address,undefined)
endif()

# tavora_room(<target> FOLDERS <folder>… LINK <library>… [EXCLUDE <regex>…])
# Collects the .cpp and .h files of the folders (below the calling folder) into one static library.
function(tavora_room target)
  cmake_parse_arguments(ROOM "" "" "FOLDERS;LINK;PRIVATE_LINK;EXCLUDE" ${ARGN})
  set(sources)
  foreach(folder ${ROOM_FOLDERS})
    file(GLOB found CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h")
    list(APPEND sources ${found})
  endforeach()
  foreach(pattern ${ROOM_EXCLUDE})
    list(FILTER sources EXCLUDE REGEX "${pattern}")
  endforeach()
  add_library(${target} STATIC ${sources})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${target} PUBLIC tavora_options ${ROOM_LINK} PRIVATE ${ROOM_PRIVATE_LINK})
  if(TAVORA_PCH)
    target_precompile_headers(${target} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/TavoraPch.h")
  endif()
endfunction()
