'use strict';

// The parts of `--help` besides the commands and their options.

const ITEMS = `
Items are typed as NAME key=value …
  key=true             a boolean
  key=42               a whole number of 32 bits
  key=[1,2]            an array of numbers or booleans
  key='"42"'           a text, without the quotes
  key:=JSON            any of these as JSON
  key=anything else    a text, 1.5 among them: items have whole numbers only`;

const EXAMPLES = `
Examples:
  zelklog modem status
  zelklog modem on --item modemLog path=/data/log level=3 --item ring size=64
  zelklog modem config get modemLog ring --json
  zelklog tcpdump config set capture snaplen=96
  zelklog remote fetch '{"device":"watch"}' 20
  ZELK_LOG_SERVICE=session zelklog --verbose tcpdump on
  ZELK_LOG_SERVICE=session zelklog check --changes`;

// The end of the help of every command.
const ENVIRONMENT = `
Environment:
  ZELK_LOG_SERVICE     the log service: session or system (that D-Bus bus), the address of a bus, none, or
                       embedded (the default): one inside this command, which keeps nothing
                       after the command ends
  OHOS_FULL_TOKEN_ID   the full token id of the caller; bit 32 marks a system application (the default)
  HILOG_LEVEL          the lowest level of log lines: D, I, W, E, F, or X for none (the
                       default; I with --verbose)
  HILOG_FILE           a file for the log lines, in place of standard error
  NO_COLOR             no colours, if not empty

Exit status:
  0    the call was answered
  1    the call failed, was refused, or could not be made, or its answer could not be written; or the
       check found something wrong or missing, or no log service
  2    the command line was wrong
  124  the call ended without an answer, or did not end in time`;

// The options of the program, for the help of its commands. Older versions of commander cannot list them.
function globalOptions({ options }) {
  const lines = options.map(({ flags, description, defaultValue }) =>
    `  ${flags.padEnd(20)} ${description}${defaultValue === undefined ? '' : ` (default: ${defaultValue})`}`);
  return `\nOptions of every command:\n${lines.join('\n')}\n`;
}

module.exports = { ENVIRONMENT, EXAMPLES, ITEMS, globalOptions };
