# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# The Debian packages that each purpose takes, and their installation. Sourced by run, test, .ci/run.

# The one table: a purpose and its packages.
packagesFor()
{
    case $1 in
        build) echo g++ cmake ninja-build pkg-config ccache libxml2-dev libexpat1-dev libsimdjson-dev \
                    libgeographiclib-dev libcli11-dev nlohmann-json3-dev ;;
        test)  echo libgtest-dev libgmock-dev python3 ;;
        python) echo python3-venv python3-dev ;;
        spark) echo openjdk-17-jre-headless ;;
        site) echo doxygen python3-venv ;;
        bare) echo debootstrap ;;
        ci)    echo clang libclang-rt-14-dev clang-format-16 clang-tidy shellcheck doxygen libxml2-utils abigail-tools \
                    dpkg-dev file groff-base ;;
        measure) echo libbenchmark-dev gnuplot-nox ;;
        *)     echo "There is no purpose \"$1\" in the table of packages." >&2; return 1 ;;
    esac
}

# installPackages PURPOSE...: installs what is missing for these purposes; says nothing if all is
# there. Everything it says goes to standard error.
installPackages()
{
    local wanted=() missing=() purpose package installed
    for purpose; do
        read -ra packages <<< "$(packagesFor "$purpose")"
        wanted+=("${packages[@]}")
    done
    if ! command -v dpkg-query > /dev/null; then
        echo "This is no Debian; the build relies on these being there: ${wanted[*]}" >&2
        return 0
    fi
    # dpkg-query fails if it knows one of them not at all, which is no failure here.
    installed=" $(dpkg-query -W -f '${db:Status-Status}=${Package} ' "${wanted[@]}" \
                      2> /dev/null || true)"
    for package in "${wanted[@]}"; do
        [[ $installed == *" installed=$package "* ]] || missing+=("$package")
    done
    [[ ${#missing[@]} -eq 0 ]] || aptInstall "${missing[@]}" >&2
}

aptInstall()
{
    local asRoot=()
    if [[ $(id -u) -ne 0 ]]; then
        if ! command -v sudo > /dev/null; then
            echo "Missing, and neither root nor sudo to install them: $*"
            return 1
        fi
        asRoot=(sudo)
    fi
    echo "Installing $*"
    # shellcheck disable=SC2191
    local apt=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive
               apt-get -q -y -o DPkg::Lock::Timeout=300)
    "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "$@"
}
