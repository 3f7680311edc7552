#!/usr/bin/env bash
# Builds the Debian package from a build folder and checks it the way a user
# gets it: unpacked into an empty root, its Depends resolvable by apt and
# naming what the program needs, `tamblo` on PATH, the menu entry and icons
# where the desktop looks, and the installed program starting until its
# window shows on a virtual display.
#
#   packaging/linux/check-deb.sh BUILD_DIR      (ctest runs it as packaging_deb_installs)
set -euo pipefail

build=$(cd "$1" && pwd)
app_id=com.zendrova.Tamblo
work=$(mktemp -d "${TMPDIR:-/tmp}/tamblo-deb.XXXXXX")
cleanup() { rm -rf "$work"; }
trap cleanup EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }
step() { echo "== $*"; }
started=$(date +%s)

# --- the package
step "cpack -G DEB"
if ! cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/out" >"$work/cpack.log" 2>&1; then
  cat "$work/cpack.log"
  fail "cpack could not build the package"
fi
debs=("$work"/out/*.deb)
[ ${#debs[@]} -eq 1 ] && [ -f "${debs[0]}" ] || fail "expected one .deb, got: ${debs[*]}"
deb=${debs[0]}
echo "$(basename "$deb"), $(du -k "$deb" | cut -f1) KiB"
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"

# Package names in Depends, without versions, alternatives counted too.
dep_names=$(echo "$depends" | tr ',|' '\n\n' | sed -e 's/(.*//' -e 's/[[:space:]]//g' | sed '/^$/d')
has_dep() { grep -qx -- "$1" <<<"$dep_names"; }

step "Depends names the tools and the GStreamer plug-in sets"
for need in ffmpeg xorriso cdrskin eject \
            gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad gstreamer1.0-libav; do
  has_dep "$need" || fail "Depends lacks $need"
done

# --- into an empty root
step "dpkg-deb -x into an empty root"
root="$work/root"
mkdir "$root"
dpkg-deb -x "$deb" "$root"
exe="$root/usr/bin/tamblo"
[ -x "$exe" ] || fail "no executable /usr/bin/tamblo in the package"

step "Depends names the package of every library the program links"
ldconfig -p >"$work/ldconfig.txt"
while read -r lib; do
  path=$(awk -v l="$lib" '$1 == l {print $NF; exit}' "$work/ldconfig.txt")
  [ -n "$path" ] || fail "$lib (linked by tamblo) is not installed here"
  owner=$(dpkg -S "$path" 2>/dev/null || dpkg -S "$(readlink -f "$path")" 2>/dev/null) \
    || fail "no package owns $path"
  pkg=${owner%%:*}
  has_dep "$pkg" || fail "Depends lacks $pkg, which holds $lib"
  echo "  $lib -> $pkg"
done < <(readelf -d "$exe" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')

step "apt would install it with every dependency (simulated)"
if ! apt-get install --simulate -o Debug::NoLocking=1 "$deb" >"$work/apt.log" 2>&1; then
  cat "$work/apt.log"
  fail "apt cannot satisfy the package's Depends"
fi
grep -q "^Inst tamblo " "$work/apt.log" || { cat "$work/apt.log"; fail "apt did not plan to install tamblo"; }

step "tamblo is on PATH"
found=$(PATH="$root/usr/bin:$PATH" command -v tamblo)
[ "$found" = "$exe" ] || fail "tamblo on PATH is '$found', not the installed $exe"

step "menu entry and icons where the desktop looks"
desktop="$root/usr/share/applications/$app_id.desktop"
[ -f "$desktop" ] || fail "no /usr/share/applications/$app_id.desktop"
desktop-file-validate "$desktop" || fail "the installed desktop entry does not validate"
entry() { sed -n "s/^$1=//p" "$desktop" | head -n1; }
[ "$(entry Exec | cut -d' ' -f1)" = tamblo ] || fail "Exec does not start tamblo: $(entry Exec)"
icon=$(entry Icon)
[ "$icon" = "$app_id" ] || fail "Icon is '$icon'"
grep -q "^Categories=.*DiscBurning;" "$desktop" || fail "not in the DiscBurning category"
hicolor="$root/usr/share/icons/hicolor"
[ -f "$hicolor/scalable/apps/$icon.svg" ] || fail "no scalable icon $icon.svg"
png_size() { od -An -tu1 -j16 -N8 "$1" | awk '{print $1*16777216+$2*65536+$3*256+$4 "x" $5*16777216+$6*65536+$7*256+$8}'; }
for size in 16 22 24 32 48 64 128 256 512; do
  png="$hicolor/${size}x${size}/apps/$icon.png"
  [ -f "$png" ] || fail "no ${size}x${size} icon"
  [ "$(png_size "$png")" = "${size}x${size}" ] || fail "$png is $(png_size "$png")"
done
metainfo="$root/usr/share/metainfo/$app_id.metainfo.xml"
[ -f "$metainfo" ] || fail "no /usr/share/metainfo/$app_id.metainfo.xml"
appstreamcli validate --no-net "$metainfo" >/dev/null || fail "the installed metainfo does not validate"
grep -q "<launchable type=\"desktop-id\">$app_id.desktop</launchable>" "$metainfo" \
  || fail "the metainfo does not launch $app_id.desktop"

# --- the installed program shows its window
step "the installed tamblo starts and shows its window"
home="$work/home"
mkdir -p "$home"
cat >"$work/show.sh" <<'EOF'
#!/usr/bin/env bash
# Runs inside xvfb-run: start tamblo, wait for its mapped "Tamblo" window.
"$EXE" >"$WORK/app.out" 2>&1 &
pid=$!
for _ in $(seq 1 150); do
  if ! kill -0 "$pid" 2>/dev/null; then
    echo "tamblo ended before its window showed"; exit 1
  fi
  id=
  for w in $(xwininfo -root -tree | awk '/"Tamblo": \(/ {print $1}'); do
    xwininfo -id "$w" | grep -q "Map State: IsViewable" && { id=$w; break; }
  done
  if [ -n "$id" ]; then
    owner=$(xprop -id "$id" _NET_WM_PID | awk '{print $NF}')
    sleep 1
    alive=yes; kill -0 "$pid" 2>/dev/null || alive=no
    kill "$pid"; wait "$pid" 2>/dev/null || true
    [ "$owner" = "$pid" ] || { echo "window $id belongs to pid $owner, not $pid"; exit 1; }
    [ "$alive" = yes ] || { echo "tamblo ended after showing its window"; exit 1; }
    echo "window $id \"Tamblo\" of pid $pid is viewable"
    exit 0
  fi
  sleep 0.2
done
kill "$pid"; wait "$pid" 2>/dev/null || true
echo "no viewable \"Tamblo\" window after 30 s"; exit 1
EOF
chmod +x "$work/show.sh"
if ! env -u QT_QPA_PLATFORM -u DISPLAY -u WAYLAND_DISPLAY HOME="$home" XDG_CONFIG_HOME="$home/.config" \
     XDG_DATA_HOME="$home/.local/share" PATH="$root/usr/bin:$PATH" EXE="$exe" WORK="$work" \
     xvfb-run -a -s "-screen 0 1280x1024x24" "$work/show.sh"; then
  echo "--- tamblo printed:"; cat "$work/app.out" 2>/dev/null || true
  fail "the installed program did not show its window"
fi
if grep -Eiq "could not load the qt platform plugin|fatal|segmentation|abort" "$work/app.out"; then
  cat "$work/app.out"
  fail "the installed program printed a fatal message"
fi

echo "package check passed in $(( $(date +%s) - started )) s"
