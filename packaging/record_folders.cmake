# Runs before anything is installed: adds the folders that this installation will make to the record.
# In: record_file, record_folders (below the prefix, or absolute).
if("$ENV{DESTDIR}" MATCHES "/_CPack_Packages/") # cpack's own copy
  return()
endif()
set(made "")
foreach(folder ${record_folders})
  get_filename_component(folder "${folder}" ABSOLUTE BASE_DIR "${CMAKE_INSTALL_PREFIX}")
  set(folder "$ENV{DESTDIR}${folder}")
  while(NOT EXISTS "${folder}")
    list(APPEND made "${folder}/")
    get_filename_component(folder "${folder}" DIRECTORY)
  endwhile()
endforeach()
list(REMOVE_DUPLICATES made)
list(JOIN made "\n" lines)
file(APPEND "${record_file}" "${lines}\n")
