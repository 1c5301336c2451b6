#!/bin/sh
# A speech service of its own for tests: speech-server.sh FOLDER. It answers at FOLDER/socket until it is ended. Its voices
# write into FOLDER/said: "NAME: text" when they begin, and when they have come to the end two seconds later "NAME. text".
set -eu
folder=$(readlink -f "$1")
mkdir -p "$folder/modules" "$folder/log"

cat >"$folder/voice.sh" <<'END'
printf '%s: %s\n' "$1" "$2" >>"$3/said"
sleep 2
printf '%s. %s\n' "$1" "$2" >>"$3/said"
END

# module NAME LANGUAGE=VOICE...: a module that knows these languages
module() {
    name=$1
    shift
    {
        # A long text would come in pieces.
        printf '%s\n' "GenericExecuteSynth \"exec sh '$folder/voice.sh' '\$VOICE' \\'\$DATA\\' '$folder'\"" \
            'GenericMaxChunkLength 1000' 'GenericDelimiters "~"' 'GenericPunctNone ""'
        for pair; do
            printf 'GenericLanguage "%s" "%s" "utf-8"\nAddVoice "%s" "MALE1" "%s"\n' \
                "${pair%=*}" "${pair%=*}" "${pair%=*}" "${pair#*=}"
        done
    } >"$folder/modules/$name.conf"
    printf 'AddModule "%s" "sd_generic" "%s.conf"\n' "$name" "$name"
}

{
    printf '%s\n' 'DisableAutoSpawn' 'LogLevel 3' 'AudioOutputMethod "libao"' 'SymbolsPreproc "none"'
    module first en-au=Sydney en-us=Boston de=Bonn pt-br=Recife
    module second fr=Lyon en-us=Texas
    module espeak-ng ja=Osaka
    printf 'DefaultModule first\n'
} >"$folder/speechd.conf"

exec speech-dispatcher -s -c unix_socket -S "$folder/socket" -P "$folder/pid" -C "$folder" -L "$folder/log" -t 0 \
    >"$folder/log/output" 2>&1
