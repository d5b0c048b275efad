# Gives what is about to be packed the files that a Debian package has and an installation has not.
set(documentation ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/vistrel)
set(pages ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man)
set(overrides ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/lintian/overrides)

file(MAKE_DIRECTORY ${overrides})
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/lintian-overrides ${overrides}/vistrel)
file(RENAME ${documentation}/LICENSE ${documentation}/copyright)

# The package's own changes: that it follows a release, on the day that CHANGELOG.md names for it.
file(READ ${documentation}/CHANGELOG.md changes)
string(REGEX MATCH "\n## ([0-9.]+) \\(([0-9-]+)\\)\n" heading "${changes}")
if(NOT CMAKE_MATCH_1 STREQUAL CPACK_PACKAGE_VERSION)
    message(FATAL_ERROR "CHANGELOG.md begins with ${CMAKE_MATCH_1}, and this is ${CPACK_PACKAGE_VERSION}")
endif()
set(day ${CMAKE_MATCH_2})
execute_process(COMMAND date --utc --rfc-email --date=${day} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${documentation}/changelog.Debian
"${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * Release ${CPACK_PACKAGE_VERSION}.

 -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}
")
file(RENAME ${documentation}/CHANGELOG.md ${documentation}/changelog)
file(READ ${documentation}/README.md readme)
string(REPLACE "[CHANGELOG.md](CHANGELOG.md)" "[changelog.gz](changelog.gz)" readme "${readme}")
file(WRITE ${documentation}/README.md "${readme}")

file(GLOB compressed ${pages}/man*/*)
execute_process(COMMAND gzip -9n ${documentation}/changelog ${documentation}/changelog.Debian ${compressed}
    COMMAND_ERROR_IS_FATAL ANY)

# Whatever the user who packs keeps from others.
execute_process(COMMAND chmod -R u=rwX,go=rX ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr COMMAND_ERROR_IS_FATAL ANY)
