/**
 * The server's side of a WebSocket, as much of it as a test needs: whole text messages, pings answered, closing.
 */
import { createHash } from "node:crypto";

const magic = "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
const opcodes = { text: 1, close: 8, ping: 9, pong: 10 };

export class Socket {
    #stream;
    #rest = Buffer.alloc(0);

    /** @param {(text: string) => void} receive */
    constructor(request, stream, receive) {
        const accept = createHash("sha1").update(request.headers["sec-websocket-key"] + magic).digest("base64");
        stream.write(
            "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n" +
                `Sec-WebSocket-Accept: ${accept}\r\n\r\n`,
        );
        this.#stream = stream;
        stream.on("data", (bytes) => {
            this.#rest = Buffer.concat([this.#rest, bytes]);
            while (this.#takeFrame(receive));
        });
        stream.on("error", () => stream.destroy());
    }

    send(message) {
        this.#write(opcodes.text, Buffer.from(JSON.stringify(message), "utf8"));
    }

    close() {
        this.#write(opcodes.close, Buffer.alloc(0));
        this.#stream.end();
    }

    /** As when the program is gone from one moment to the next. */
    break() {
        this.#stream.destroy();
    }

    #write(opcode, payload) {
        if (this.#stream.writable) {
            this.#stream.write(Buffer.concat([head(opcode, payload.length), payload]));
        }
    }

    #takeFrame(receive) {
        const frame = readFrame(this.#rest);
        if (frame === null) {
            return false;
        }
        this.#rest = this.#rest.subarray(frame.end);
        if (frame.opcode === opcodes.text) {
            receive(frame.payload.toString("utf8"));
        } else if (frame.opcode === opcodes.ping) {
            this.#write(opcodes.pong, frame.payload);
        } else if (frame.opcode === opcodes.close) {
            this.close();
        }
        return true;
    }
}

function head(opcode, length) {
    if (length < 126) {
        return Buffer.from([0x80 | opcode, length]);
    }
    if (length < 0x10000) {
        const made = Buffer.from([0x80 | opcode, 126, 0, 0]);
        made.writeUInt16BE(length, 2);
        return made;
    }
    const made = Buffer.alloc(10);
    made[0] = 0x80 | opcode;
    made[1] = 127;
    made.writeBigUInt64BE(BigInt(length), 2);
    return made;
}

// What a browser sends is masked.
function readFrame(bytes) {
    if (bytes.length < 2) {
        return null;
    }
    let length = bytes[1] & 0x7f;
    let at = 2;
    if (length >= 126) {
        const size = length === 126 ? 2 : 8;
        if (bytes.length < at + size) {
            return null;
        }
        length = length === 126 ? bytes.readUInt16BE(at) : Number(bytes.readBigUInt64BE(at));
        at += size;
    }
    if (bytes.length < at + 4 + length) {
        return null;
    }
    const mask = bytes.subarray(at, at + 4);
    const payload = Buffer.from(bytes.subarray(at + 4, at + 4 + length).map((byte, index) => byte ^ mask[index % 4]));
    return { opcode: bytes[0] & 0x0f, payload, end: at + 4 + length };
}
