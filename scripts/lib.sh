# Shared by the scripts: installing the build's dependencies and configuring a build dir.

ZEL_PACKAGES="cmake ninja-build g++ clang pkg-config libgtest-dev libgmock-dev libbenchmark-dev
zlib1g-dev libboost-dev libexpat1-dev libxml2-dev libcurl4 libcurl4-openssl-dev nlohmann-json3-dev
python3-pyftpdlib iproute2
python3 binutils dpkg-dev mount pci.ids usb.ids libssl-dev libxml2-utils python3-jsonschema
groff-base libmimalloc-dev"
# Large, and only for the tests (the HTML report opened in a browser): scripts/test.sh
# installs them, the build does not need them.
ZEL_TEST_PACKAGES="chromium"

# Installs the packages that are missing (default: ZEL_PACKAGES); quiet and quick when all
# are there.
zel_install_deps() {
  local missing=()
  for p in ${1:-$ZEL_PACKAGES}; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed" || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "== installing: ${missing[*]}"
    if [ "$(id -u)" != 0 ]; then
      echo "missing packages and not root: install ${missing[*]}" >&2
      return 1
    fi
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
  fi
}

# zel_build DIR [cmake options...]: configures once, then builds incrementally.
zel_build() {
  local dir=$1
  shift
  local launcher=()
  command -v ccache >/dev/null && launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  if [ ! -f "$dir/build.ninja" ]; then
    cmake -S . -B "$dir" -G Ninja "${launcher[@]}" "$@" >/dev/null
  fi
  echo "== building $dir"
  cmake --build "$dir" -j "$(nproc)"
}
