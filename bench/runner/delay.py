"""A line that takes its time: delay.py LISTEN CONNECT MILLISECONDS forwards every line from one port of
this machine to another, each way that much later. What is sent stays in order and is not slowed down."""

import asyncio
import sys


async def forward(reader, writer, delay: float):
    loop = asyncio.get_running_loop()
    while data := await reader.read(1 << 18):
        loop.call_later(delay, writer.write, data)
    loop.call_later(delay, writer.close)


async def main(listen: int, connect: int, delay: float):
    async def serve(reader, writer):
        server_reader, server_writer = await asyncio.open_connection("127.0.0.1", connect)
        await asyncio.gather(forward(reader, server_writer, delay),
                             forward(server_reader, writer, delay), return_exceptions=True)

    server = await asyncio.start_server(serve, "127.0.0.1", listen)
    print("ready", flush=True)
    await server.serve_forever()


asyncio.run(main(int(sys.argv[1]), int(sys.argv[2]), int(sys.argv[3]) / 1000))
