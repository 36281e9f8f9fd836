# Run by cpack when everything is installed beneath the package's root, before it is packed: what Debian wants of a
# package beyond its files.
set(root ${CPACK_TEMPORARY_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})

# The bus is told where the program will be, not where it lies now.
set(QUILLMERE_PREFIX ${CPACK_PACKAGING_INSTALL_PREFIX})
configure_file(${CPACK_QUILLMERE_BINARY}/${CPACK_QUILLMERE_ID}.service.in ${root}/${CPACK_QUILLMERE_SERVICE} @ONLY)

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(changes ${root}/share/doc/quillmere/changelog)
file(WRITE ${changes} "quillmere (${CPACK_DEBIAN_PACKAGE_VERSION}) unstable; urgency=medium

  * This version, built from its sources.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")

file(GLOB_RECURSE pages ${root}/share/man/*.1)
execute_process(COMMAND gzip -9 -n -f ${pages} ${changes} COMMAND_ERROR_IS_FATAL ANY)
