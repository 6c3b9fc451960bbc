# Shared by ./run and ./test: installs the Debian packages the project needs.
# Idempotent: apt-get runs only when something is missing.

ZEPHRIN_PACKAGES=(
  build-essential cmake pkg-config ccache
  libmotif-dev libxt-dev libx11-dev libxext-dev libxtst-dev libxfixes-dev
  libjpeg62-turbo-dev libpng-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth x11-xserver-utils x11-utils xfonts-utils
  fonts-lmodern python3-fonttools
  clang-14 libclang-rt-14-dev
)

ensure_packages() {
  local missing=()
  local p
  for p in "${ZEPHRIN_PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null && sudo=sudo || { echo "need root to install: ${missing[*]}" >&2; return 1; }
  fi
  echo "Installing: ${missing[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
