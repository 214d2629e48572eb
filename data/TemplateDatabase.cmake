# The library template instdbxx.tmp: an empty library with both tables, made at build time from
# data/schema.sql by a small QtSql tool (no sqlite3 program needed), written beside the
# executables in the build and installed in the program's data folder (share/marlo).
set(MARLO_TEMPLATE_DATABASE ${CMAKE_BINARY_DIR}/bin/instdbxx.tmp)

add_executable(MakeTemplateDatabase ${CMAKE_CURRENT_LIST_DIR}/MakeTemplateDatabase.cpp)
target_link_libraries(MakeTemplateDatabase PRIVATE Qt6::Core Qt6::Sql)
set_target_properties(MakeTemplateDatabase PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tools)

add_custom_command(
  OUTPUT ${MARLO_TEMPLATE_DATABASE}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/bin
  COMMAND MakeTemplateDatabase ${CMAKE_CURRENT_LIST_DIR}/schema.sql ${MARLO_TEMPLATE_DATABASE}
  DEPENDS MakeTemplateDatabase ${CMAKE_CURRENT_LIST_DIR}/schema.sql
  COMMENT "Making the library template instdbxx.tmp"
  VERBATIM)
add_custom_target(template_database ALL DEPENDS ${MARLO_TEMPLATE_DATABASE})

install(FILES ${MARLO_TEMPLATE_DATABASE} DESTINATION share/marlo)

# Everything that opens a library needs the template built: the front ends, the library's
# tests. Their targets are made after this file is read, hence deferred.
function(marlo_template_database_dependencies)
  foreach(t marlo marlo-cli)
    if(TARGET ${t})
      add_dependencies(${t} template_database)
    endif()
  endforeach()
  if(EXISTS ${CMAKE_SOURCE_DIR}/tests/library)
    file(GLOB _library_tests ${CMAKE_SOURCE_DIR}/tests/library/tst_*.cpp ${CMAKE_SOURCE_DIR}/tests/gui/tst_*.cpp
         ${CMAKE_SOURCE_DIR}/tests/cli/tst_*.cpp)
    foreach(src IN LISTS _library_tests)
      get_filename_component(name ${src} NAME_WE)
      if(TARGET ${name})
        add_dependencies(${name} template_database)
      endif()
      # The command-line tests run the program itself.
      if(TARGET ${name} AND TARGET marlo-cli AND (name MATCHES "^tst_cli" OR name MATCHES "^tst_library(Cli|ImportKilled)$"))
        add_dependencies(${name} marlo-cli)
      endif()
    endforeach()
  endif()
endfunction()
cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL marlo_template_database_dependencies)
