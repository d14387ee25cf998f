# The shared library: the objects behind the export list. The linker script is the list, preprocessed.
set(map ${CMAKE_CURRENT_BINARY_DIR}/exports.map)
file(GLOB_RECURSE export_lists CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.def)
add_custom_command(
  OUTPUT ${map}
  COMMAND ${CMAKE_CXX_COMPILER} -E -P -x c -I${CMAKE_CURRENT_SOURCE_DIR}
          ${CMAKE_CURRENT_SOURCE_DIR}/frontend/exports.map.in -o ${map}
  DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/frontend/exports.map.in ${export_lists}
  VERBATIM)
add_custom_target(trl20_exports DEPENDS ${map})

add_library(trl20 SHARED $<TARGET_OBJECTS:trl20_core>)
add_dependencies(trl20 trl20_exports)
set_target_properties(trl20 PROPERTIES
  OUTPUT_NAME GLESv1_CM_trl20
  LINKER_LANGUAGE C # no C++ run-time library
  LINK_DEPENDS ${map})
target_link_libraries(trl20 PRIVATE vsp m)
# The application's own GL symbols, of whatever library, must never replace ours in our own calls.
target_link_options(trl20 PRIVATE
  -Wl,--version-script=${map} -Wl,-Bsymbolic -Wl,--no-undefined -Wl,--as-needed -Wl,-z,now -Wl,-O1
  -Wl,-soname,libGLESv1_CM_trl20.so)
# An application may open this file by path, with no LD_LIBRARY_PATH: libvsp.so lies beside it.
set(CMAKE_SKIP_RPATH OFF)
set_target_properties(trl20 PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
if(TRL20_LTO)
  # The options that decide results are given again: the code is generated here.
  target_link_options(trl20 PRIVATE -flto=auto -O3 -ffp-contract=off)
endif()
