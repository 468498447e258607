"""The completion of bash, made of the help pages and of what the program lists."""
import shlex

SCRIPT = r"""# Completion of {program} in bash. Made from the program's help pages.
_{program}() {{
    local cur=${{COMP_WORDS[COMP_CWORD]}} prev=${{COMP_WORDS[COMP_CWORD - 1]}} word command= words=
    # "--json=report" is three words here.
    if [[ $cur == = ]]; then
        cur=
    elif [[ $prev == = ]]; then
        prev=${{COMP_WORDS[COMP_CWORD - 2]}}
    fi
    COMPREPLY=()
    case $prev in
    {files})
        compopt -o default
        return
        ;;
    --set)
        compopt -o nospace
        mapfile -t COMPREPLY < <(compgen -S = -W {parameters} -- "$cur")
        return
        ;;
    --language)
        mapfile -t COMPREPLY < <(compgen -W {languages} -- "$cur")
        return
        ;;
    {others})
        return
        ;;
    esac
    for word in "${{COMP_WORDS[@]:1:COMP_CWORD - 1}}"; do
        case $word in
        {commands}) command=$word; break ;;
        esac
    done
    if [[ $cur == -* ]]; then
        case $command in
{options}
        *) words={all_options} ;;
        esac
    else
        case $command in
        "") words={all_commands} ;;
        run) words={tests} ;;
        replay | history) compopt -o default ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
}}
complete -F _{program} {program}
"""


def _words(words):
    return shlex.quote(" ".join(dict.fromkeys(words)))


def make(program, overview, commands, tests, parameters, languages):
    """The script's bytes."""
    options = [option for _, group in overview.groups for option in group]
    named = {"--set", "--language"}
    files = [option.name for option in options if option.argument == "FILE"]
    others = [option.name for option in options
              if option.argument and option.argument != "FILE" and option.name not in named]
    by_command = "\n".join(
        f"        {command.name}) words={_words(option.name for option in command.options)} ;;"
        for command in commands)
    return SCRIPT.format(
        program=program, files="|".join(files), others="|".join(others), parameters=_words(parameters),
        languages=_words(languages), commands="|".join(overview.commands), options=by_command,
        all_options=_words(option.name for option in options),
        all_commands=_words(overview.commands), tests=_words(tests)).encode("utf-8")
