# Runs after everything is installed: adds the files to the record. In: record_file.
if("$ENV{DESTDIR}" MATCHES "/_CPack_Packages/") # cpack's own copy
  return()
endif()
list(TRANSFORM CMAKE_INSTALL_MANIFEST_FILES PREPEND "$ENV{DESTDIR}" OUTPUT_VARIABLE installed)
list(JOIN installed "\n" lines)
file(APPEND "${record_file}" "${lines}\n")
