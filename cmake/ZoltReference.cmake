# The target "reference" makes the API reference (HTML) of all public headers, with Doxygen. Every warning is an error, but
# for members without a comment: they do what their names say. Classes and records must have one.
find_program(ZOLT_DOXYGEN doxygen)
if(NOT ZOLT_DOXYGEN)
  return()
endif()
get_property(components GLOBAL PROPERTY ZOLT_COMPONENTS)
set(headers)
foreach(component IN LISTS components)
  get_target_property(found zolt_${component} HEADER_SET)
  list(APPEND headers ${found})
endforeach()
list(FILTER headers EXCLUDE REGEX "/detail/")
list(JOIN headers "\" \\\n\"" ZOLT_REFERENCE_HEADERS)
set(reference ${PROJECT_BINARY_DIR}/reference)
file(CONFIGURE OUTPUT ${reference}/Doxyfile @ONLY CONTENT [[
PROJECT_NAME = zolt
PROJECT_NUMBER = @PROJECT_VERSION@
PROJECT_BRIEF = "@PROJECT_DESCRIPTION@"
OUTPUT_DIRECTORY = "@reference@"
INPUT = "@PROJECT_SOURCE_DIR@/docs/reference.dox" "@ZOLT_REFERENCE_HEADERS@"
STRIP_FROM_PATH = "@PROJECT_SOURCE_DIR@/src" "@PROJECT_SOURCE_DIR@/hosts/qt" "@PROJECT_SOURCE_DIR@"
STRIP_FROM_INC_PATH = "@PROJECT_SOURCE_DIR@/src" "@PROJECT_SOURCE_DIR@/hosts/qt"
GENERATE_LATEX = NO
HAVE_DOT = NO
JAVADOC_AUTOBRIEF = YES
EXTRACT_STATIC = YES
BUILTIN_STL_SUPPORT = YES
MACRO_EXPANSION = YES
EXPAND_ONLY_PREDEF = YES
PREDEFINED = Q_OBJECT= Q_DECL_EXPORT= "Q_PROPERTY(x)=" "Q_ENUM(x)=" Q_SIGNALS=public "Q_SLOTS="
QUIET = YES
WARN_LOGFILE = "@reference@/warnings"
]])
add_custom_target(
  reference
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${reference}/html
  COMMAND ${ZOLT_DOXYGEN} ${reference}/Doxyfile
  COMMAND sh -c "! grep -v 'warning: Member .* is not documented[.]$' '${reference}/warnings'"
  COMMENT "API reference: ${reference}/html/index.html"
  VERBATIM)
if(ZOLT_BUILD_TESTS)
  add_test(NAME repo.reference COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target reference)
  set_tests_properties(repo.reference PROPERTIES LABELS slow RESOURCE_LOCK build_folder TIMEOUT 300)
endif()
