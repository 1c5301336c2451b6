# Adds free photographs to the sample photos. Sourced by ../run after setup.sh; nothing depends on them.

# add_photographs FOLDER: fetches the packages named in photographs.txt and puts their photographs below FOLDER, with
# their photographers and licences in Credits.txt beside them. Without a network it is tried again at the next start.
add_photographs() {
    local photos=$1 store=build/photographs wanted package
    wanted=$(sha256sum <scripts/photographs.txt)
    [ "$(cat "$photos/.photographs" 2>/dev/null)" = "$wanted" ] && return 0
    say "Downloading some free photographs"
    mkdir -p "$store" build/log
    for package in $(sed 's/#.*//; s/ *|.*//' scripts/photographs.txt | sort -u); do
        [ -d "$store/$package" ] || fetch_package "$package" "$store" 2>build/log/photographs.log || {
            say "  Could not download them. Lumora's own sample pictures are there."
            return 0
        }
    done
    copy_photographs "$photos" "$store"
    printf '%s\n' "$wanted" >"$photos/.photographs"
}

# fetch_package PACKAGE STORE: the package's files below STORE/PACKAGE, extracted completely or not at all; nothing is
# installed.
fetch_package() {
    local folder=$2/fetching
    rm -rf "$folder"
    mkdir "$folder"
    (cd "$folder" && timeout 120 apt-get -q download "$1" >/dev/null) && dpkg-deb -x "$folder"/*.deb "$folder/files" &&
        mv "$folder/files" "$2/$1"
}

copy_photographs() {
    local package file group name author licence
    {
        printf '%s\n\n' "These photographs come from packages of Debian. Each belongs to its photographer, who lets everyone use it under
the licence named (https://creativecommons.org/licenses). All other pictures here are part of Lumora."
        while IFS='|' read -r package file group name author licence; do
            case $package in '' | '#'*) continue ;; esac
            package=${package%% } file=${file# } file=${file%% } group=${group# } group=${group%% }
            name=${name# } name=${name%% } author=${author# } author=${author%% } licence=${licence# }
            mkdir -p "$1/$group"
            install -m 644 "$2/$package/$file" "$1/$group/.$name" && mv "$1/$group/.$name" "$1/$group/$name.jpg" || continue
            printf '%s\n    %s, %s\n    package %s, %s\n' "$group/$name.jpg" "$author" "$licence" "$package" "$file"
        done <scripts/photographs.txt
    } >"$1/Credits.txt"
}
