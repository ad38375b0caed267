# Read by the scripts that build: the time that goes into files is that of the commit, not that of the build.
# A tree without its history is given a time in SOURCE_DATE_EPOCH, or gets that of CMakeLists.txt.
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CMakeLists.txt)
fi
export SOURCE_DATE_EPOCH
