# Completion of the hearth command for fish. The command itself knows what can come next.
function __hearth_complete
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    $words[1] complete -- $words[2..-1] (commandline --current-token --cut-at-cursor) 2>/dev/null
end
complete --command hearth --arguments '(__hearth_complete)'
