// Drives hueshelf-mcp with the official MCP TypeScript client, as an AI coding tool would: the
// handshake (the client refuses a protocol version it doesn't know), the tool list, every tool (the client validates each structured result against the
// tool's output schema), the refusals, and the last-used record. Everything happens in a
// throw-away home. Usage: node check-server.mjs --server PATH/hueshelf-mcp

import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import assert from "node:assert/strict";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";

const serverIndex = process.argv.indexOf("--server");
if (serverIndex < 0 || !process.argv[serverIndex + 1]) {
  console.error("usage: node check-server.mjs --server PATH");
  process.exit(2);
}
const server = path.resolve(process.argv[serverIndex + 1]);

const home = fs.mkdtempSync(path.join(os.tmpdir(), "hueshelf-mcp-client-"));
const configDir = path.join(home, ".config");
const dataDir = path.join(home, ".local", "share");

// The client hands a child only a few variables of its own; the homes are passed explicitly so
// that the server never sees the real ones.
function serverEnvironment() {
  return {
    PATH: process.env.PATH ?? "/usr/bin:/bin",
    HOME: home,
    XDG_CONFIG_HOME: configDir,
    XDG_DATA_HOME: dataDir,
    LANG: "C.UTF-8",
  };
}

async function connect(clientId) {
  const transport = new StdioClientTransport({
    command: server,
    args: ["--client", clientId],
    env: serverEnvironment(),
    stderr: "pipe",
  });
  const client = new Client({ name: "hueshelf-check", version: "1.0.0" });
  await client.connect(transport);
  return client;
}

function textOf(result) {
  assert.equal(result.content.length, 1);
  assert.equal(result.content[0].type, "text");
  return result.content[0].text;
}

// A successful call: structured content present, validated by the client, and the same JSON
// as the text.
async function call(client, name, args = {}) {
  const result = await client.callTool({ name, arguments: args });
  assert.notEqual(result.isError, true, `${name} failed: ${JSON.stringify(result.content)}`);
  assert.ok(result.structuredContent, `${name} has no structured content`);
  assert.deepEqual(JSON.parse(textOf(result)), result.structuredContent);
  return result.structuredContent;
}

// A refusal: a tool result with isError and a sentence, not a protocol error.
async function refusal(client, name, args) {
  const result = await client.callTool({ name, arguments: args });
  assert.equal(result.isError, true, `${name} ${JSON.stringify(args)} was not refused`);
  const text = textOf(result);
  assert.match(text, /\w.*\./, `${name} refusal says nothing useful: ${text}`);
  return text;
}

let client;

async function main() {
  client = await connect("cursor");

  assert.equal(client.getServerVersion().name, "hueshelf");
  assert.match(client.getInstructions() ?? "", /get_brand_colors/);
  await client.ping();

  const { tools } = await client.listTools();
  const names = tools.map((tool) => tool.name).sort();
  assert.deepEqual(names, [
    "check_contrast",
    "check_palette",
    "convert_color",
    "create_palette",
    "get_brand_colors",
    "get_palette",
    "list_palettes",
  ]);
  for (const tool of tools) {
    assert.match(tool.name, /^[a-z0-9_]{1,64}$/);
    assert.equal(tool.inputSchema.type, "object", tool.name);
    assert.equal(tool.outputSchema?.type, "object", tool.name);
    assert.equal(tool.annotations?.readOnlyHint, tool.name !== "create_palette", tool.name);
    assert.ok(tool.description && tool.description.length > 20, tool.name);
  }

  // A new palette goes through the store and is read back by every reading tool.
  const created = await call(client, "create_palette", {
    name: "Harbour",
    colors: ["#0B3C5D", { hex: "rgb(50, 140, 193)", name: "Sea" }, "#D9B310", "#FFFFFF"],
  });
  const prefs = path.join(configDir, "hueshelf", "io.hueshelf.Hueshelf.json");
  assert.ok(fs.existsSync(prefs), "create_palette wrote no preferences file");
  assert.ok(fs.readFileSync(prefs, "utf8").includes("Harbour"));

  const listed = await call(client, "list_palettes");
  const listedText = JSON.stringify(listed);
  assert.ok(listedText.includes("Harbour"), listedText);

  const byName = await call(client, "get_palette", { name: "harbour" });
  const byNameText = JSON.stringify(byName);
  assert.ok(byNameText.includes("#0B3C5D") && byNameText.includes("#328CC1"), byNameText);
  assert.ok(byNameText.includes("Sea"), byNameText);

  // The palette chosen in the tools panel is the brand palette.
  const id = JSON.stringify(created).match(/[0-9A-Fa-f]{8}-[0-9A-Fa-f-]{27}/)?.[0];
  assert.ok(id, "create_palette returned no id");
  fs.writeFileSync(
    path.join(configDir, "hueshelf", "hueshelf.conf"),
    `[General]\nbrandTemplateId=${id.toUpperCase()}\n`,
  );
  const brand = JSON.stringify(await call(client, "get_brand_colors"));
  assert.ok(brand.includes("Harbour") && brand.includes("#D9B310"), brand);

  const contrast = JSON.stringify(
    await call(client, "check_contrast", { foreground: "#777777", background: "#FFFFFF" }),
  ).toLowerCase();
  assert.ok(contrast.includes("4.47"), contrast);

  const converted = JSON.stringify(await call(client, "convert_color", { color: "rgb(51, 102, 255)" }));
  assert.ok(converted.includes("#3366FF"), converted);

  const checked = JSON.stringify(await call(client, "check_palette", { colors: ["#FFFFFF", "#FEFEFE"] }));
  assert.ok(checked.length > 20, checked);

  await refusal(client, "get_palette", { name: "No Such Palette" });
  await refusal(client, "check_contrast", { foreground: "not a colour", background: "#000000" });
  await refusal(client, "create_palette", { name: "Empty", colors: [] });

  // An unknown tool is a protocol error, which the client raises.
  await assert.rejects(client.callTool({ name: "make_coffee", arguments: {} }), /-32602|Unknown tool|tool/i);

  await client.close();
  client = undefined;

  const lastUsed = JSON.parse(fs.readFileSync(path.join(dataDir, "hueshelf", "ai-tool-last-used.json"), "utf8"));
  assert.equal(typeof lastUsed.cursor, "number");
  assert.ok(Math.abs(lastUsed.cursor - Date.now()) < 10 * 60 * 1000, `odd time ${lastUsed.cursor}`);

  console.log(`hueshelf-mcp passed the MCP client check (${tools.length} tools)`);
}

try {
  await main();
} catch (error) {
  console.error(error);
  process.exitCode = 1;
} finally {
  await client?.close();
  fs.rmSync(home, { recursive: true, force: true });
}
