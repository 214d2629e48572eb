# Run by cpack on the staged files before it makes the Debian package (CPACK_PRE_BUILD_SCRIPTS):
# strips the executables as Debian's own packages are stripped (dh_strip: the compiler's
# comments and notes go too) and adds the package's lintian overrides, which a plain
# `cmake --install` has no use for.
file(GLOB _prefixes LIST_DIRECTORIES true "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/bin")
file(GLOB _executables LIST_DIRECTORIES false "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/bin/*")
if(NOT _executables)
  message(FATAL_ERROR "no executables to strip in ${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
endif()
foreach(_file IN LISTS _executables)
  execute_process(COMMAND "${CPACK_MARLO_STRIP}" --remove-section=.comment --remove-section=.note --strip-unneeded "${_file}"
                  RESULT_VARIABLE _status)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "cannot strip ${_file}")
  endif()
endforeach()
foreach(_bin IN LISTS _prefixes)
  get_filename_component(_prefix "${_bin}" DIRECTORY)
  # Not file(INSTALL): cpack's DESTDIR would put the file under the staging folder twice.
  file(MAKE_DIRECTORY "${_prefix}/share/lintian/overrides")
  file(COPY_FILE "${CPACK_MARLO_LINTIAN_OVERRIDES}" "${_prefix}/share/lintian/overrides/marlo")
endforeach()
