// Generated from js/index.d.ts by scripts/sdk_declaration.mjs.
import type { Callback } from './@ohos.base';

/**
 * Control of device-side diagnostic logging: the modem log, network packet capture (tcpdump), the Bluetooth call PCM
 * log, and the logs and protocol data of remote devices. Every answer comes from the system's log service.
 *
 * Terms used below:
 *
 * - **System application**: a process whose full token id has bit 32 set. The first twelve functions serve system
 *   applications only; the last four serve every caller.
 * - **Refused**: the reason is logged, nothing is thrown, no request is made, and the function returns `undefined`.
 *   This is why the promise forms of the first twelve may return `undefined`.
 * - **Failed**: the service answered with a code other than 0, or could not be reached. The code is not delivered.
 * - **Unreadable as JSON**: a text that jsoncpp's reader does not accept. It accepts comments, leading zeros and
 *   whatever follows the value; a number beyond a double's range anywhere makes the whole text unreadable.
 * - **Never settles**: the promise stays pending, or the callback is never called. Set your own time limit.
 *
 * A callback gets the answer as its only argument; there is no error argument. An exception that it throws is uncaught.
 * Unless an entry says otherwise, a function throws only when the runtime itself fails or a getter of the caller's own
 * objects throws. A getter that throws does not stop the call: it goes on with what had been read by then, a callback
 * still gets the answer, and the promise is lost with the exception. Without a callback a device then makes no
 * request.
 *
 * An array is read to its `length`, holes included, while JavaScript waits. The only limit is memory, of which even an
 * empty item takes about 200 bytes: check the length of an array that comes from somebody else.
 *
 * @namespace zelklogservice
 * @systemapi
 * @since 11
 */
declare namespace zelklogservice {
  /**
   * One parameter of a configuration item. On the way to the service
   *
   * - a number becomes an int32: the fraction is cut off, the low 32 bits are kept, NaN and infinities become 0;
   * - a string longer than 8194 bytes of UTF-8 becomes `""`, and any string ends at its first NUL; nothing is escaped;
   * - an array of strings arrives empty and without a comma after it, so the item's text is not JSON;
   * - an array must hold one type only, otherwise it is left out; an empty array is left out as well.
   *
   * @systemapi
   * @since 11
   */
  type ConfigValue = boolean | number | string | readonly boolean[] | readonly number[] | readonly string[];

  /**
   * The parameters of an item by name, sent in the order of the object's own properties (on the desktop the enumerable
   * ones). A name ends at its first NUL, and one longer than 8194 bytes of UTF-8 counts as `""`: what is sent is the
   * property with that name, if there is one.
   *
   * TypeScript refuses a value whose type is an `interface` of your own ("Index signature is missing"): pass a copy,
   * `{ ...modem }`, or declare a `type` in place of the `interface`.
   *
   * @systemapi
   * @since 11
   */
  type ConfigParameters = Readonly<Record<string, ConfigValue>>;

  /**
   * One setting to be changed.
   *
   * @systemapi
   * @since 11
   */
  interface ConfigItem {
    /** The setting's name, up to its first NUL: 1 to 8194 bytes of UTF-8; anything else is sent as `""`. */
    readonly configKey: string;
    readonly value: ConfigParameters;
  }

  /**
   * One command for the modem log, in the form of an item.
   *
   * @systemapi
   * @since 11
   */
  type ModemLogCommand = ConfigItem;

  /**
   * A stored parameter as a query returns it. Lists and nested objects are not returned.
   *
   * @systemapi
   * @since 11
   */
  type ConfigAnswerValue = boolean | number | string | null;

  /**
   * One answer to a configuration query.
   *
   * @systemapi
   * @since 11
   */
  interface ConfigEntry {
    /** Missing when the service's answer has no such string. */
    configKey?: string;
    /**
     * The members of the service's JSON text: names that look like integers first, then the others in ascending byte
     * order. Names and strings end at their first NUL; `__proto__` is not among them, and `"__proto__": null` leaves the
     * object without a prototype. Empty when the service gave no text, or one that is unreadable as JSON: a number beyond
     * a double's range makes it so, and all its members are lost.
     */
    value: Record<string, ConfigAnswerValue>;
  }

  /**
   * One log mask. Each property is missing when the service's answer has no such string.
   *
   * @systemapi
   * @since 11
   */
  interface LogMask {
    configKey?: string;
    value?: string;
  }

  /**
   * The error that the two functions that are not supported at present throw.
   *
   * @systemapi
   * @since 11
   */
  interface NotSupportedError extends Error {
    readonly code: '6';
  }

  /**
   * Reads the modem log's configuration; the callback gets one entry per text that the service's `GetModemLogConfig`
   * returns, in the same order.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than two arguments; keys that
   *   are not an array.
   * - Never calls back: the request failed; `keys` or the answer is empty; one of its texts is unreadable as JSON or
   *   nested about 1,000 levels deep; a setting is an integer of up to 64 bits that fits neither int32 nor uint32. Inside
   *   a list or a nested object such an integer does no harm, and a larger one arrives as a double, up to a double's
   *   range.
   * - A second argument that is not a function is ignored: the call answers by promise.
   *
   * @param { readonly string[] } keys - The settings to read. A key ends at its first NUL; one that is not a string of 1 to 8194 bytes is sent as `""`.
   * @param { Callback<ConfigEntry[]> } callback
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function getModemLogConfig(keys: readonly string[], callback: Callback<ConfigEntry[]>): undefined;

  /**
   * Reads the modem log's configuration: one entry per text that the service's `GetModemLogConfig` returns, in the same
   * order.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than two arguments; keys that are not
   *   an array.
   * - Never settles (the promise stays pending: set a time limit): the request failed; `keys` or the answer is empty; one
   *   of its texts is unreadable as JSON or nested about 1,000 levels deep; a setting is an integer of up to 64 bits that
   *   fits neither int32 nor uint32. Inside a list or a nested object such an integer does no harm, and a larger one
   *   arrives as a double, up to a double's range.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { readonly string[] } keys - The settings to read. A key ends at its first NUL; one that is not a string of 1 to 8194 bytes is sent as `""`.
   * @returns { Promise<ConfigEntry[]> | undefined }
   * @systemapi
   * @since 11
   */
  function getModemLogConfig(keys: readonly string[]): Promise<ConfigEntry[]> | undefined;

  /**
   * Not supported at present: throws a {@link NotSupportedError} on every call, and later calls back with the answer of
   * the service's `GetModemLogDirectPackConfig`, a text up to its first NUL: the request is made all the same.
   *
   * - Rights: system application.
   * - Refused (returns `undefined` and throws nothing, the callback is never called): any other caller.
   * - Never calls back: the request failed; there is more than one argument.
   *
   * @param { Callback<string> } callback
   * @returns { undefined }
   * @throws { NotSupportedError } `GetModemLogDirectPackConfig current function not support in current time`
   * @systemapi
   * @since 11
   */
  function getModemLogDirectPackConfig(callback: Callback<string>): undefined;

  /**
   * Not supported at present: throws a {@link NotSupportedError} on every call. The answer is lost with the exception,
   * although the request is made, and a device does not even make the request: use a callback.
   *
   * - Rights: system application.
   * - Refused (returns `undefined` and throws nothing): any other caller.
   *
   * @returns { undefined }
   * @throws { NotSupportedError } `GetModemLogDirectPackConfig current function not support in current time`
   * @systemapi
   * @since 11
   */
  function getModemLogDirectPackConfig(): undefined;

  /**
   * Not supported at present: throws a {@link NotSupportedError} on every call, and later calls back with the answer of
   * the service's `GetModemLogLogMasks`, one mask per text: the request is made all the same.
   *
   * - Rights: system application.
   * - Refused (returns `undefined` and throws nothing, the callback is never called): any other caller.
   * - Never calls back: the request failed; the answer is empty; one of its texts is unreadable as JSON or nested about
   *   1,000 levels deep; there is more than one argument.
   *
   * @param { Callback<LogMask[]> } callback
   * @returns { undefined }
   * @throws { NotSupportedError } `GetModemLogLogMasks current function not support in current time`
   * @systemapi
   * @since 11
   */
  function getModemLogLogMasks(callback: Callback<LogMask[]>): undefined;

  /**
   * Not supported at present: throws a {@link NotSupportedError} on every call. The answer is lost with the exception,
   * although the request is made, and a device does not even make the request: use a callback.
   *
   * - Rights: system application.
   * - Refused (returns `undefined` and throws nothing): any other caller.
   *
   * @returns { undefined }
   * @throws { NotSupportedError } `GetModemLogLogMasks current function not support in current time`
   * @systemapi
   * @since 11
   */
  function getModemLogLogMasks(): undefined;

  /**
   * Asks whether the modem log is on; the callback gets the state, from the service's `GetModemLogStatus`.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than one argument.
   * - Failed: the callback is called nevertheless, and cannot distinguish that from an answer: it gets the state if the
   *   service gave one, otherwise `false`.
   * - An argument that is not a function is ignored: the call answers by promise.
   *
   * @param { Callback<boolean> } callback
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function getModemLogStatus(callback: Callback<boolean>): undefined;

  /**
   * Asks whether the modem log is on: the state, from the service's `GetModemLogStatus`.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than one argument.
   * - Failed: rejected with a boolean, not an Error: the state if the service gave one, otherwise `false`.
   *
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function getModemLogStatus(): Promise<boolean> | undefined;

  /**
   * Turns the modem log on or off, and applies `configs` with the switch; the callback gets the result of the service's
   * `HandleModemLogSwitch`, `true` when it has switched.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than three arguments.
   * - Failed: the callback is called nevertheless, and cannot distinguish that from an answer: it gets the result if the
   *   service gave one, otherwise `false`.
   *
   * @param { boolean } on - A state that is not a boolean means off.
   * @param { Callback<boolean> } callback - Comes before the items: in the other order the array is taken for the callback. Its type is not checked, and one that cannot be called ends in an uncaught exception.
   * @param { readonly ConfigItem[] | undefined } configs - With an empty list, the request has no items. On the desktop, the request with items is `HandleModemLogSwitchWithConfigs`.
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function handleModemLogSwitch(
    on: boolean,
    callback: Callback<boolean>,
    configs?: readonly ConfigItem[] | undefined
  ): undefined;

  /**
   * Turns the modem log on or off, and applies `configs` with the switch: the result of the service's
   * `HandleModemLogSwitch`, `true` when it has switched.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than three arguments.
   * - Failed: rejected with a boolean, not an Error: the result if the service gave one, otherwise `false`.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { boolean } on - A state that is not a boolean means off.
   * @param { readonly ConfigItem[] | undefined } configs - With an empty list, the request has no items. On the desktop, the request with items is `HandleModemLogSwitchWithConfigs`.
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function handleModemLogSwitch(
    on: boolean,
    configs?: readonly ConfigItem[] | undefined
  ): Promise<boolean> | undefined;

  /**
   * Changes the modem log's configuration; the callback gets the result of the service's `ChangeModemLogConfig`, `true`
   * when it has applied the items.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; items that are not an array.
   * - Failed: the callback is called nevertheless, and cannot distinguish that from an answer: it gets the result if the
   *   service gave one, otherwise `false`. An empty list fails too, without a request.
   *
   * @param { readonly ConfigItem[] } configs
   * @param { Callback<boolean> } callback - Used only when it is a function and there are exactly two arguments; otherwise the call answers by promise.
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function changeModemLogConfig(configs: readonly ConfigItem[], callback: Callback<boolean>): undefined;

  /**
   * Changes the modem log's configuration: the result of the service's `ChangeModemLogConfig`, `true` when it has applied
   * the items.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; items that are not an array.
   * - Failed: rejected with a boolean, not an Error: the result if the service gave one, otherwise `false`. An empty list
   *   fails too, without a request.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { readonly ConfigItem[] } configs
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function changeModemLogConfig(configs: readonly ConfigItem[]): Promise<boolean> | undefined;

  /**
   * Sends one command to the modem log; the callback gets the result of the service's `SendModemLogCommand`.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; a command that is not an object.
   * - Never calls back: the request failed. Only an unreachable service is logged.
   *
   * @param { ModemLogCommand } command - Sent even when incomplete: with the key `""` if it has no usable `configKey`, with no parameters if it has no `value`.
   * @param { Callback<boolean> } callback - The second of two arguments, whatever its type: one that cannot be called ends in an uncaught exception. With three or more arguments the call answers by promise.
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function sendModemLogCommand(command: ModemLogCommand, callback: Callback<boolean>): undefined;

  /**
   * Sends one command to the modem log: the result of the service's `SendModemLogCommand`.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; a command that is not an object.
   * - Never settles (the promise stays pending: set a time limit): the request failed. Only an unreachable service is
   *   logged.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { ModemLogCommand } command - Sent even when incomplete: with the key `""` if it has no usable `configKey`, with no parameters if it has no `value`.
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function sendModemLogCommand(command: ModemLogCommand): Promise<boolean> | undefined;

  /**
   * Asks whether network packet capture is running; the callback gets the state, from the service's `GetTcpdumpStatus`.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than one argument.
   * - Never calls back: the request failed.
   * - An argument that is not a function is ignored: the call answers by promise.
   *
   * @param { Callback<boolean> } callback
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function getTcpdumpStatus(callback: Callback<boolean>): undefined;

  /**
   * Asks whether network packet capture is running: the state, from the service's `GetTcpdumpStatus`.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than one argument.
   * - Never settles (the promise stays pending: set a time limit): the request failed.
   *
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function getTcpdumpStatus(): Promise<boolean> | undefined;

  /**
   * Reads the configuration of packet capture; the callback gets one entry per text that the service's `GetTcpdumpConfig`
   * returns, in the same order.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than two arguments; keys that
   *   are not an array.
   * - Never calls back: the request failed; `keys` or the answer is empty; one of its texts is unreadable as JSON or
   *   nested about 1,000 levels deep; a setting is an integer of up to 64 bits that fits neither int32 nor uint32. Inside
   *   a list or a nested object such an integer does no harm, and a larger one arrives as a double, up to a double's
   *   range.
   * - A second argument that is not a function is ignored: the call answers by promise.
   *
   * @param { readonly string[] } keys - The settings to read. A key ends at its first NUL; one that is not a string of 1 to 8194 bytes is sent as `""`.
   * @param { Callback<ConfigEntry[]> } callback
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function getTcpdumpConfig(keys: readonly string[], callback: Callback<ConfigEntry[]>): undefined;

  /**
   * Reads the configuration of packet capture: one entry per text that the service's `GetTcpdumpConfig` returns, in the
   * same order.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than two arguments; keys that are not
   *   an array.
   * - Never settles (the promise stays pending: set a time limit): the request failed; `keys` or the answer is empty; one
   *   of its texts is unreadable as JSON or nested about 1,000 levels deep; a setting is an integer of up to 64 bits that
   *   fits neither int32 nor uint32. Inside a list or a nested object such an integer does no harm, and a larger one
   *   arrives as a double, up to a double's range.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { readonly string[] } keys - The settings to read. A key ends at its first NUL; one that is not a string of 1 to 8194 bytes is sent as `""`.
   * @returns { Promise<ConfigEntry[]> | undefined }
   * @systemapi
   * @since 11
   */
  function getTcpdumpConfig(keys: readonly string[]): Promise<ConfigEntry[]> | undefined;

  /**
   * Changes the configuration of packet capture; the callback gets the result of the service's `ChangeTcpdumpConfig`,
   * `true` when it has applied the items.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; items that are not an array.
   * - Never calls back: the request failed; `configs` is empty. Only an unreachable service is logged.
   *
   * @param { readonly ConfigItem[] } configs
   * @param { Callback<boolean> } callback - Used only when it is a function and there are exactly two arguments; otherwise the call answers by promise.
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function changeTcpdumpConfig(configs: readonly ConfigItem[], callback: Callback<boolean>): undefined;

  /**
   * Changes the configuration of packet capture: the result of the service's `ChangeTcpdumpConfig`, `true` when it has
   * applied the items.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; items that are not an array.
   * - Never settles (the promise stays pending: set a time limit): the request failed; `configs` is empty. Only an
   *   unreachable service is logged.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { readonly ConfigItem[] } configs
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function changeTcpdumpConfig(configs: readonly ConfigItem[]): Promise<boolean> | undefined;

  /**
   * Starts or stops packet capture, and applies `configs` with the switch; the callback gets the result of the service's
   * `HandleTcpdumpSwitch`, `true` when it has switched.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than three arguments.
   * - Never calls back: the request failed.
   *
   * @param { boolean } on - A state that is not a boolean means stop.
   * @param { Callback<boolean> } callback - Comes before the items: in the other order the array is taken for the callback. Its type is not checked, and one that cannot be called ends in an uncaught exception.
   * @param { readonly ConfigItem[] | undefined } configs - With an empty list, the request has no items. On the desktop, the request with items is `HandleTcpdumpSwitchWithConfigs`.
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function handleTcpdumpSwitch(
    on: boolean,
    callback: Callback<boolean>,
    configs?: readonly ConfigItem[] | undefined
  ): undefined;

  /**
   * Starts or stops packet capture, and applies `configs` with the switch: the result of the service's
   * `HandleTcpdumpSwitch`, `true` when it has switched.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than three arguments.
   * - Never settles (the promise stays pending: set a time limit): the request failed.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { boolean } on - A state that is not a boolean means stop.
   * @param { readonly ConfigItem[] | undefined } configs - With an empty list, the request has no items. On the desktop, the request with items is `HandleTcpdumpSwitchWithConfigs`.
   * @returns { Promise<boolean> | undefined }
   * @systemapi
   * @since 11
   */
  function handleTcpdumpSwitch(
    on: boolean,
    configs?: readonly ConfigItem[] | undefined
  ): Promise<boolean> | undefined;

  /**
   * Turns the Bluetooth call PCM log on or off, with the service's `HandleBluetoothCallPcmLogSwitch`. **The callback gets
   * `false` on success**, because the service answers this switch with its code alone.
   *
   * - Rights: system application.
   * - Refused (the reason is logged, the callback is never called): any other caller; more than three arguments.
   * - Never calls back: the request failed.
   *
   * @param { boolean } on - A state that is not a boolean means off.
   * @param { Callback<false> } callback - Comes before the items: in the other order the array is taken for the callback. Its type is not checked, and one that cannot be called ends in an uncaught exception.
   * @param { readonly ConfigItem[] | undefined } configs - Read but not sent.
   * @returns { undefined }
   * @systemapi
   * @since 11
   */
  function handleBluetoothCallPcmLogSwitch(
    on: boolean,
    callback: Callback<false>,
    configs?: readonly ConfigItem[] | undefined
  ): undefined;

  /**
   * Turns the Bluetooth call PCM log on or off, with the service's `HandleBluetoothCallPcmLogSwitch`. **The answer is
   * `false` on success**, because the service answers this switch with its code alone: a fulfilled promise means success.
   *
   * - Rights: system application.
   * - Refused (returns `undefined`, the reason is logged): any other caller; more than three arguments.
   * - Never settles (the promise stays pending: set a time limit): the request failed.
   * - Throws: an Error with the runtime's own text, when called without arguments.
   *
   * @param { boolean } on - A state that is not a boolean means off.
   * @param { readonly ConfigItem[] | undefined } configs - Read but not sent.
   * @returns { Promise<false> | undefined }
   * @systemapi
   * @since 11
   */
  function handleBluetoothCallPcmLogSwitch(
    on: boolean,
    configs?: readonly ConfigItem[] | undefined
  ): Promise<false> | undefined;

  /**
   * Fetches the logs of remote devices.
   *
   * - Rights: none.
   * - Answer: the reply text of the service's `FetchRemoteDevicesLogs`, unchanged.
   * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
   * - Refused (returns `undefined`, the reason is logged): not exactly two arguments.
   *
   * @param { string } request - A text in the service's own format, up to its first NUL. One longer than 8194 bytes of UTF-8, or anything that is not a string, is sent as `""`.
   * @param { number } value - A number that the service defines. Sent as an int64: the fraction is cut off, a number out of range becomes the nearest in range, NaN, infinities and anything that is not a number become 0.
   * @returns { Promise<string> }
   * @systemapi
   * @since 11
   */
  function fetchRemoteDevicesLogs(request: string, value: number): Promise<string>;

  /**
   * Queries the logs of remote devices.
   *
   * - Rights: none.
   * - Answer: the reply text of the service's `QueryRemoteDevicesLogs`, unchanged.
   * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
   * - Refused (returns `undefined`, the reason is logged): not exactly one argument.
   *
   * @param { string } request - As for {@link fetchRemoteDevicesLogs}.
   * @returns { Promise<string> }
   * @systemapi
   * @since 11
   */
  function queryRemoteDevicesLogs(request: string): Promise<string>;

  /**
   * Lists the remote devices. Arguments are ignored, so no call is refused.
   *
   * - Rights: none.
   * - Answer: the reply text of the service's `GetRemoteDevicesList`, unchanged.
   * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
   *
   * @returns { Promise<string> }
   * @systemapi
   * @since 11
   */
  function getRemoteDevicesList(): Promise<string>;

  /**
   * Sends a request for protocol data. The request and the reply are logged, each up to its first NUL; when the service
   * cannot be reached, the request is not. A device cuts long lines.
   *
   * - Rights: none.
   * - Answer: the reply text of the service's `QueryProtocolData`, unchanged.
   * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
   * - Refused (returns `undefined`, the reason is logged): not exactly one argument.
   *
   * @param { string } request - As for {@link fetchRemoteDevicesLogs}.
   * @returns { Promise<string> }
   * @systemapi
   * @since 11
   */
  function queryProtocolData(request: string): Promise<string>;
}

export default zelklogservice;
