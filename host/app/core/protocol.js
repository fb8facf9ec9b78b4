/**
 * What the host sends, as far as this page reads it.
 *
 * @typedef {object} Hello
 * @property {"hello"} type
 * @property {{identity: string, label: string, version: string, path: string, interface: "cpp"|"c"}} module
 * @property {boolean} stand_in whether the service behind the module is the stand-in, which can be told what to do
 * @property {object|null} schema of a scenario
 * @property {MachineModel|null} machine
 * @property {string[]} operations of the backend library, which can be made to fail
 * @property {string[]} documents that the backend can deliver
 * @property {Entry[]} entries
 *
 * @typedef {object} Entry one thing that happened: an input (`do`) or an output (`out`), with its own further keys
 * @property {number} seq counted from 1
 * @property {number} time milliseconds since 1970
 * @property {number} thread
 * @property {string} [do]
 * @property {string} [out]
 * @property {number} [input] of an output: the input that caused it
 *
 * @typedef {object} Screen
 * @property {"shown"|"hidden"|""} window
 * @property {Part[]} parts
 * @property {{state: string, text: string}} tray
 * @property {Record<string, StatisticsGroup[]>} statistics by the list's id
 * @property {Popup[]} popups the one in front last
 * @property {Toast[]} toasts
 * @property {{number: number, time: number, text: string}[]} history
 *
 * @typedef {object} Part
 * @property {"tile"|"group"} kind
 * @property {string} title
 * @property {Control[]} controls
 *
 * @typedef {object} Control
 * @property {string} element "label", "button", ...
 * @property {string} id
 * @property {boolean} hidden
 * @property {boolean} disabled
 * @property {Record<string, string>} attributes as the notices gave them
 *
 * @typedef {object} StatisticsGroup
 * @property {string} id
 * @property {string} title
 * @property {{id: string, columns: string[]}[]} rows
 *
 * @typedef {object} Popup
 * @property {string} id
 * @property {"custom"|"browser"} type
 * @property {string} title
 * @property {string[]} texts
 * @property {Control[]} controls
 * @property {number} number counts up when the popup comes to the front
 * @property {Browser|null} browser
 *
 * @typedef {object} Browser
 * @property {number} number
 * @property {"browse_for_cookie"|"browse_for_local_content"|"dispatch_event"|"browse"} operation
 * @property {string} address what the frame shows; empty where it can't be shown in one
 * @property {string} start_url
 * @property {string} detail payload for the local page
 * @property {number} detail_number counts up with every detail
 *
 * @typedef {object} Toast
 * @property {number} number
 * @property {string} id
 * @property {string} title
 * @property {string[]} texts
 * @property {Control[]} controls
 *
 * @typedef {object} MachineModel
 * @property {{name: string, regions: Region[]}[]} machines the root first
 *
 * @typedef {object} Region
 * @property {string} name
 * @property {string} initial
 * @property {string[]} states
 * @property {Row[]} rows
 *
 * @typedef {object} Row a transition; with an empty `to` the state stays as it is
 * @property {string} from
 * @property {string} event
 * @property {string} guard
 * @property {string} action
 * @property {string} to
 *
 * @typedef {(what: string, fields?: Record<string, unknown>) => Promise<boolean>} Ask sends a request; what goes
 *     wrong is shown, and the promise then holds false
 */

export {};
