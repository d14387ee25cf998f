# Removes what the record lists: the files, then the folders that installing made and that are empty now.
#   cmake -D RECORD=FILE -P uninstall.cmake
if(NOT EXISTS "${RECORD}")
  message(STATUS "Nothing was installed from this build folder")
  return()
endif()
file(STRINGS "${RECORD}" paths)
list(REMOVE_DUPLICATES paths)
list(SORT paths ORDER DESCENDING) # what lies in a folder comes before the folder
set(files ${paths})
list(FILTER files EXCLUDE REGEX "/$")
set(folders ${paths})
list(FILTER folders INCLUDE REGEX "/$")

foreach(file ${files})
  message(STATUS "Removing ${file}")
  file(REMOVE "${file}")
  if(EXISTS "${file}" OR IS_SYMLINK "${file}")
    message(FATAL_ERROR "${file} cannot be removed; nothing is forgotten, uninstall again with the rights to do so")
  endif()
endforeach()
foreach(folder ${folders})
  execute_process(COMMAND rmdir -- "${folder}" ERROR_QUIET) # keeps a folder that holds something of others
endforeach()
file(REMOVE "${RECORD}")
