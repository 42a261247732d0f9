# Installs the build into a folder of its own and builds the consumer against it, by find_package and by pkg-config.
#   cmake -DBUILD=... -DSOURCE=... -DCXX=... -DFLAGS=... -DWORK=... -DLIBDIR=... -P consumer_test.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  message("${output}")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "failed (${status}): ${ARGN}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/tree)
# A tree that only works where it was made is of no use: it is moved before anything is built against it.
file(RENAME ${WORK}/tree ${WORK}/moved)

run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/cmake -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/moved
    -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS} -Wall -Wextra -Werror")
run(${CMAKE_COMMAND} --build ${WORK}/cmake)
run(${WORK}/cmake/consumer)

set(ENV{PKG_CONFIG_PATH} ${WORK}/moved/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs tvobase RESULT_VARIABLE status OUTPUT_VARIABLE flags
                OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "pkg-config does not know tvobase")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
run(${CXX} ${FLAGS} ${SOURCE}/main.cpp -o ${WORK}/by_pkg_config ${flags} -Wl,-rpath,${WORK}/moved/${LIBDIR})
run(${WORK}/by_pkg_config)

# The installed program finds its library by itself.
if(EXISTS ${WORK}/moved/bin/tvo)
  run(${WORK}/moved/bin/tvo --version)
endif()
