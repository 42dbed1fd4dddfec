# Module helpers.
#
# Every module under src/ is an OBJECT library `kxm_<name>`; the shared library
# `kxbasics` is made of all of them. A module's test executable links only the
# objects of the module and of the modules it depends on, so that one module
# builds and tests without the others.

set_property(GLOBAL PROPERTY KX_ALL_MODULES "")

# kx_module(<name> [DEPS <module>...] [LIBS <imported target>...])
function(kx_module name)
  cmake_parse_arguments(KM "" "" "DEPS;LIBS" ${ARGN})
  file(GLOB srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT srcs)
    # A module that has no sources yet still links.
    set(empty ${CMAKE_CURRENT_BINARY_DIR}/kxm_${name}_empty.cpp)
    file(WRITE ${empty} "")
    set(srcs ${empty})
  endif()
  add_library(kxm_${name} OBJECT ${srcs})
  target_include_directories(kxm_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  foreach(d IN LISTS KM_DEPS)
    target_link_libraries(kxm_${name} PUBLIC kxm_${d})
  endforeach()
  target_link_libraries(kxm_${name} PUBLIC ${KM_LIBS} Threads::Threads ${CMAKE_DL_LIBS})
  set_property(GLOBAL PROPERTY KX_DEPS_${name} ${KM_DEPS})
  set_property(GLOBAL APPEND PROPERTY KX_ALL_MODULES ${name})
endfunction()

# The module and all modules it depends on, dependencies last.
function(kx_module_closure name out)
  set(result "")
  set(todo ${name})
  while(todo)
    list(POP_FRONT todo m)
    if(NOT m IN_LIST result)
      list(APPEND result ${m})
      get_property(deps GLOBAL PROPERTY KX_DEPS_${m})
      list(APPEND todo ${deps})
    endif()
  endwhile()
  set(${out} ${result} PARENT_SCOPE)
endfunction()

function(kx_shared_library name)
  get_property(mods GLOBAL PROPERTY KX_ALL_MODULES)
  add_library(${name} SHARED)
  foreach(m IN LISTS mods)
    target_link_libraries(${name} PUBLIC kxm_${m})
  endforeach()
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0)
endfunction()

# One GoogleTest executable test_<module> from tests/<module>/*.cpp.
function(kx_module_tests name)
  file(GLOB srcs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${name}/*.cpp)
  if(NOT srcs)
    return()
  endif()
  kx_module_closure(${name} mods)
  add_executable(test_${name} ${srcs})
  foreach(m IN LISTS mods)
    target_link_libraries(test_${name} PRIVATE kxm_${m})
  endforeach()
  target_link_libraries(test_${name} PRIVATE GTest::gtest GTest::gmock GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE
      KX_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/${name}/data"
      KX_EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples"
      KX_PYTHON3="${KX_PYTHON3}")
  gtest_discover_tests(test_${name}
      WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
      DISCOVERY_MODE PRE_TEST
      PROPERTIES LABELS ${name})
endfunction()
