# Runs before CPack packs what it has installed: adds what every Debian package has, compresses what
# Debian wants compressed, and gives every file the time of the commit, so that the packages of one
# commit are the same byte for byte.
string(TIMESTAMP changed "%a, %d %b %Y %H:%M:%S +0000" UTC) # of SOURCE_DATE_EPOCH if it is set
string(TIMESTAMP seconds "%s" UTC)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(documents ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share/doc/${package})
  file(MAKE_DIRECTORY ${documents})
  file(COPY_FILE ${CPACK_QUIV_DEBIAN_FILES}/copyright ${documents}/copyright)
  configure_file(${CPACK_QUIV_DEBIAN_FILES}/changelog.in ${documents}/changelog.Debian @ONLY)
endforeach()

file(GLOB_RECURSE compressed
  ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/*.1
  ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog.Debian)
execute_process(COMMAND gzip -9n ${compressed} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch --no-dereference --date=@${seconds} {} +
  COMMAND_ERROR_IS_FATAL ANY)
