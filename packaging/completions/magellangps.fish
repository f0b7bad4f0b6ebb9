# Completes magellangps and magellangps-simulator in fish. The programs know what can follow; this
# script asks them. Installed once under the name of each program.

function __magellangps_complete
    set -l token (commandline -ct)
    set -l words (commandline -opc)
    # "--output=trip" completes as the path "trip", with "--output=" kept before it.
    set -l kept (string match -r -- '^--[^=]*=' "$token")
    set -l path (string replace -r -- '^--[^=]*=' '' "$token")
    for answer in ($words[1] __complete -- $words[2..-1] "$token" 2>/dev/null)
        switch $answer
            case :folders
                __fish_complete_directories "$path" | string replace -r '^' -- "$kept"
            case :files
                __fish_complete_path "$path" | string replace -r '^' -- "$kept"
            case ':files *'
                set -l extensions (string split ' ' -- $answer)[2..-1]
                __fish_complete_path "$path" |
                    string match -ri -- '^[^\t]*(?:/|\.(?:'(string join '|' $extensions)'))(?:\t.*)?$' |
                    string replace -r '^' -- "$kept"
            case '*'
                echo $answer
        end
    end
end

complete -c magellangps -f -a '(__magellangps_complete)'
complete -c magellangps-simulator -f -a '(__magellangps_complete)'
