// The same package as an ES module: named imports, and the whole as the default.
import zelk, { getModemLogStatus, type ConfigItem } from 'zelklogservice';
import * as everything from 'zelklogservice'; // @ts-expect-error: nothing of that name
import { getModemLogstatus } from 'zelklogservice';

const item: ConfigItem = { configKey: 'capture', value: { enable: true } };
export const status: Promise<boolean> | undefined = getModemLogStatus();
export const changed: Promise<boolean> | undefined = zelk.changeModemLogConfig([item]);
export const list: Promise<string> = everything.getRemoteDevicesList();
void getModemLogstatus;

export { logService, type Handlers } from 'zelklogservice/testing';
